"""Sites of expressions. Part of the finder."""
from dataclasses import replace

from clang.cindex import CursorKind as K
from clang.cindex import TypeKind

import operators
from operators import FALSE, TRUE
from sites import LEFT, RIGHT, Assignment, Literal, Logical, Operation, Sign, Step, StepAfter, Truth
from source_text import without_comments

NUMBER_TYPES = {
    TypeKind.CHAR_S,
    TypeKind.CHAR_U,
    TypeKind.SCHAR,
    TypeKind.UCHAR,
    TypeKind.SHORT,
    TypeKind.USHORT,
    TypeKind.INT,
    TypeKind.UINT,
    TypeKind.LONG,
    TypeKind.ULONG,
    TypeKind.LONGLONG,
    TypeKind.ULONGLONG,
    TypeKind.FLOAT,
    TypeKind.DOUBLE,
    TypeKind.LONGDOUBLE,
    TypeKind.ENUM,
    TypeKind.BOOL,
    TypeKind.DEPENDENT,
    TypeKind.UNEXPOSED,
}
POINTER_TYPES = {TypeKind.POINTER, TypeKind.CONSTANTARRAY, TypeKind.INCOMPLETEARRAY}


class Expressions:
    def expression_handlers(self):
        return {
            K.BINARY_OPERATOR: self._infix,
            K.COMPOUND_ASSIGNMENT_OPERATOR: self._assignment,
            K.UNARY_OPERATOR: self._unary,
            K.CONDITIONAL_OPERATOR: self._conditional,
            K.CALL_EXPR: self._call,
            K.INTEGER_LITERAL: self._literal(operators.other_integer),
            K.FLOATING_LITERAL: self._literal(operators.other_floating),
            K.CXX_BOOL_LITERAL_EXPR: self._literal(operators.other_bool),
        }

    def operands(self, node):
        """(left, right, operator, gap) of an infix expression; None when its text is not that."""
        children = list(node.get_children())
        if len(children) < 2:
            return None
        left, right = self.range(children[0]), self.range(children[-1])
        gap = self.source.slice(left[1], right[0])
        if (left[0], right[1]) != self.range(node):
            return None
        return left, right, without_comments(gap).strip(), gap

    def infix_operator(self, node):
        found = self.operands(node) if node.kind == K.BINARY_OPERATOR else None
        return found[2] if found else ""

    def unary_operator(self, node):
        """(operator before the operand, operator behind it, range of the operand)."""
        start, end = self.range(node)
        operand = self.range(next(node.get_children()))
        return (
            without_comments(self.source.slice(start, operand[0])).strip(),
            without_comments(self.source.slice(operand[1], end)).strip(),
            operand,
        )

    def condition(self, node, context):
        """An expression that decides. Comparisons, && and || have mutants of their own, others become true and
        false."""
        core = self.core(node)
        own = self.infix_operator(core) in (*operators.COMPARISONS, *operators.EQUALITIES, *operators.LOGICAL)
        literal = core.kind in (K.CXX_BOOL_LITERAL_EXPR, K.INTEGER_LITERAL)
        if not own and not literal and not self.in_macro(node):
            self._truth(node, context)
            context = replace(context, skipped=frozenset((TRUE, FALSE)), in_loop=False)
        self.visit(node, context)

    def _truth(self, node, context):
        alternatives = (FALSE,) if context.in_loop else (TRUE, FALSE)
        self.add(Truth(*self.range(node), tuple(a for a in alternatives if a not in context.skipped)), context)

    def _infix(self, node, context):
        found = self.operands(node)
        if found is None:
            return self.inside(node, context)
        left, right, operator, gap = found
        place = {"left": left, "right": right, "operator": operator, "gap": gap}
        inner = context.inside()
        if operator in operators.LOGICAL:
            self.add(Logical(*self.range(node), (LEFT, RIGHT), **place), context)
            neutral = TRUE if operator == "&&" else FALSE
            inner = replace(inner, skipped=frozenset([neutral]), in_loop=context.in_loop)
        elif operator in operators.EQUALITIES:
            self._truth(node, context)
        else:
            self.add(Operation(*self.range(node), self._other_operators(node, operator, context), **place), context)
        return self.each(node.get_children(), inner)

    def _other_operators(self, node, operator, context):
        comparisons = operators.LOOP_COMPARISONS if context.in_loop else operators.COMPARISONS
        if operator in comparisons:
            return tuple(a for a in comparisons[operator] if a not in context.skipped)
        left, right = (child.type.get_canonical().kind for child in list(node.get_children())[:2])
        if operator in operators.ARITHMETIC and left in NUMBER_TYPES | POINTER_TYPES and right in NUMBER_TYPES:
            return (operators.ARITHMETIC[operator],)
        return ()

    def _assignment(self, node, context):
        found = self.operands(node)
        if found is not None and found[2] in operators.ASSIGNMENTS:
            left, right, operator, gap = found
            self.add(
                Assignment(
                    *self.range(node),
                    (operators.ASSIGNMENTS[operator],),
                    left=left,
                    right=right,
                    operator=operator,
                    gap=gap,
                ),
                context,
            )
        self.inside(node, context)

    def _unary(self, node, context):
        before, behind, operand = self.unary_operator(node)
        place = {"operand": operand, "operator": before or behind}
        if before == "!":
            self._truth(node, context)
        elif before == "-":
            self.add(Sign(*self.range(node), ("",), **place), context)
        elif before in operators.STEPS:
            self.add(Step(*self.range(node), (operators.STEPS[before],), **place), context)
        elif behind in operators.STEPS:
            self.add(StepAfter(*self.range(node), (operators.STEPS[behind],), **place), context)
        self.inside(node, context)

    def _conditional(self, node, context):
        condition, *branches = node.get_children()
        self.condition(condition, context.inside())
        self.each(branches, context.inside())

    def _call(self, node, context):
        """Comparison by an overloaded operator, which is a child between the operands."""
        children = list(node.get_children())
        if len(children) == 3 and self.text(children[1]) in (*operators.EQUALITIES, *operators.COMPARISONS):
            self._truth(node, context)
        self.inside(node, context)

    def _literal(self, other):
        def handle(node, context):
            changed = other(self.text(node))
            if changed is not None:
                self.add(Literal(*self.range(node), (changed,)), context)

        return handle
