"""A C++ source text by byte offset."""
import bisect
import re

SKIPPED = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)
TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|[()\[\]{};]', re.S)
DIRECTIVE = re.compile(r"#\s*pragma\s+omp\b((?:\\\n|[^\n])*)\s*\Z")
PAIRS = {")": "(", "]": "[", "}": "{"}


class SourceText:
    """Offsets are bytes; Latin-1 keeps one character for each, whatever the encoding of the file."""

    def __init__(self, path):
        self.bytes = path.read_bytes()
        self.text = self.bytes.decode("latin-1")
        self.line_starts = [0] + [match.end() for match in re.finditer("\n", self.text)]

    def slice(self, start, end):
        return self.text[start:end]

    def line_of(self, offset):
        return bisect.bisect_right(self.line_starts, offset)

    def line_text(self, line):
        end = self.line_starts[line] if line < len(self.line_starts) else len(self.text)
        return readable(self.text[self.line_starts[line - 1] : end])

    def before(self, offset):
        """The last character before `offset` that is no space."""
        return self.text[:offset].rstrip()[-1:]

    def directive_before(self, offset):
        """Words of the OpenMP directive that the statement at `offset` belongs to."""
        before = self.text[:offset]
        match = DIRECTIVE.search(before, max(before.rfind("#"), 0))
        return match[1].split() if match else []

    def header(self, start):
        """Offset of the parenthesis that closes the first one from `start` on, and the offsets of the semicolons
        directly between the two; None when there is none."""
        open_brackets, semicolons = [], []
        for match in TOKEN.finditer(self.text, start):
            token = match[0]
            if token in "([{":
                open_brackets.append(token)
            elif token in PAIRS and open_brackets and open_brackets.pop() == PAIRS[token] and not open_brackets:
                return match.start(), semicolons
            elif token == ";" and len(open_brackets) == 1:
                semicolons.append(match.start())
        return None


def without_comments(text):
    return SKIPPED.sub(" ", text)


def readable(text):
    """One line, single spaces, in the encoding of the file."""
    return " ".join(text.encode("latin-1").decode("utf-8", "replace").split())
