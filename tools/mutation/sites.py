"""Places in a source text that can be mutated, and how each is rewritten.

A site knows two rewritings. Its schema holds the original and every mutant of the site side by side and chooses
at run time, by the number of the mutant. Its replacement is the text of one mutant alone. Both are given as
pieces: text, or a (start, end) range of the original in which other sites may lie. No operand is written twice,
so that nested schemata do not multiply, and no line end is lost, so that line numbers stay.
"""
from dataclasses import dataclass, field

from operators import FALSE, TRUE

ON = "::mutation::On({})"


@dataclass(eq=False)
class Site:
    start: int
    end: int
    alternatives: tuple = ()
    constant: str = ""  # why it cannot be chosen at run time
    declaration: object = None  # the constant whose initialiser or body it is in
    mutants: list = field(default_factory=list)

    @property
    def whole(self):
        return self.start, self.end

    def shown(self, alternative):
        """Pieces of the mutated text for people."""
        return self.replacement(alternative)


def chosen(numbered, original):
    """Text of a conditional expression: each (number, mutant's text) in turn, else the original."""
    return "".join(f"{ON.format(number)} ? {text} : " for number, text in numbered) + original


def line_ends(gap):
    return "\n" * gap.count("\n")


def forced(numbered, pieces):
    """An expression of type bool, made true or false by the mutants of that name."""
    pieces = list(pieces)
    for number, alternative in numbered:
        if alternative == FALSE:
            pieces = [f"(!{ON.format(number)} && ", *pieces, ")"]
    for number, alternative in numbered:
        if alternative == TRUE:
            pieces = [f"({ON.format(number)} || ", *pieces, ")"]
    return pieces


class Truth(Site):
    """An expression taken as a condition: true or false in its place."""

    def replacement(self, alternative):
        return [alternative]

    def schema(self, numbered):
        return forced(numbered, ["static_cast<bool>(", self.whole, ")"])


class Literal(Site):
    def replacement(self, alternative):
        return [alternative]

    def shown(self, alternative):
        return [alternative.strip("()")]

    def schema(self, numbered):
        ((number, alternative),) = numbered
        return [f"({ON.format(number)} ? {alternative} : ", self.whole, ")"]


class Deletion(Site):
    """An expression statement without its semicolon."""

    def replacement(self, alternative):
        return ["static_cast<void>(0)"]

    def shown(self, alternative):
        return ["nothing"]

    def schema(self, numbered):
        ((number, _),) = numbered
        return [f"({ON.format(number)} ? static_cast<void>(0) : static_cast<void>(", self.whole, "))"]


@dataclass(eq=False)
class Infix(Site):
    """left operator right; `gap` is the text between the operands."""

    left: tuple = ()
    right: tuple = ()
    operator: str = ""
    gap: str = ""

    def replacement(self, alternative):
        if alternative in (TRUE, FALSE):
            return [alternative]
        return [self.left, self.gap.replace(self.operator, alternative, 1), self.right]


class Operation(Infix):
    """Comparison or arithmetic on built-in types."""

    def schema(self, numbered):
        operators = [(n, f"l {a} r") for n, a in numbered if a not in (TRUE, FALSE)]
        call = [
            "([](const auto& l, const auto& r) { return ",
            chosen(operators, f"l {self.operator} r"),
            "; }(",
            self.left,
            "," + line_ends(self.gap),
            self.right,
            "))",
        ]
        return forced(numbered, call if operators else ["(", self.whole, ")"])


class Assignment(Infix):
    """Compound assignment."""

    def schema(self, numbered):
        operators = [(n, f"(l {a} r)") for n, a in numbered]
        return [
            "([](auto& l, const auto& r) -> auto& { return ",
            chosen(operators, f"(l {self.operator} r)"),
            "; }(",
            self.left,
            "," + line_ends(self.gap),
            self.right,
            "))",
        ]


LEFT, RIGHT = "left operand", "right operand"


class Logical(Infix):
    """&& or ||: one operand alone."""

    def replacement(self, alternative):
        return [self.left if alternative == LEFT else self.right]

    def schema(self, numbered):
        neutral = TRUE if self.operator == "&&" else FALSE
        pieces = {LEFT: [self.left], RIGHT: [self.right]}
        for number, alternative in numbered:
            other = RIGHT if alternative == LEFT else LEFT
            pieces[other] = forced([(number, neutral)], ["static_cast<bool>(", *pieces[other], ")"])
        return ["((", *pieces[LEFT], ")" + line_ends(self.gap), f" {self.operator} (", *pieces[RIGHT], "))"]


@dataclass(eq=False)
class Prefix(Site):
    """Unary operator before its operand."""

    operand: tuple = ()
    operator: str = ""


class Sign(Prefix):
    """Unary minus."""

    def replacement(self, alternative):
        return [self.operand]

    def schema(self, numbered):
        text = chosen([(n, "+v") for n, _ in numbered], "-v")
        return ["([](const auto& v) { return ", text, "; }(", self.operand, "))"]


class Step(Prefix):
    """++ or -- before its operand."""

    def replacement(self, alternative):
        return [alternative, self.operand]

    def schema(self, numbered):
        text = chosen([(n, f"{a}v") for n, a in numbered], f"{self.operator}v")
        return ["([](auto& v) -> auto& { return ", text, "; }(", self.operand, "))"]


class StepAfter(Prefix):
    """++ or -- behind its operand."""

    def replacement(self, alternative):
        return [self.operand, alternative]

    def schema(self, numbered):
        text = chosen([(n, f"v{a}") for n, a in numbered], f"v{self.operator}")
        return ["([](auto& v) { return ", text, "; }(", self.operand, "))"]


@dataclass(eq=False)
class Declaration:
    """A constant, or a function, that the compiler evaluates. Where nothing asks for its value at compile time,
    it can be left to the run, and its mutants chosen there."""

    key: tuple  # file and offset of its name
    line: int
    token: tuple  # range of `constexpr`; empty where the declaration stays as it is
    substitute: str
    uses: set = field(default_factory=set)  # keys of what its value depends on
    pinned: bool = False


@dataclass(eq=False)
class Mutant:
    number: int
    site: Site
    alternative: str
    file: str  # relative to the project
    line: int
    line_text: str
    mutation: str  # "original -> mutated"
    status: str = ""
    by: str = ""  # what killed it, or why it was not tried

    @property
    def entry(self):
        """As the list of equivalent mutants names it."""
        return f"{self.file} | {self.line_text} | {self.mutation}"
