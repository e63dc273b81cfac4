"""Conditions of statements, and statements to delete. Part of the finder."""
import re
from dataclasses import replace

from clang.cindex import CursorKind as K

import operators
from sites import Deletion
from source_text import without_comments

BLOCKS = (K.COMPOUND_STMT, K.DEFAULT_STMT, K.LABEL_STMT)


class Statements:
    def statement_handlers(self):
        return {
            K.IF_STMT: self._if,
            K.WHILE_STMT: self._while,
            K.DO_STMT: self._do,
            K.FOR_STMT: self._for,
            K.CXX_FOR_RANGE_STMT: self._for_range,
            K.CASE_STMT: self._case,
            **dict.fromkeys(BLOCKS, self._block),
        }

    def _statement(self, node, context):
        """A statement of a block, or the body of a loop or branch."""
        if "atomic" in self.source.directive_before(node.extent.start.offset):
            context = context.needed("OpenMP atomic")
        if node.kind.is_expression() and self._acts(self.core(node)) and not self.in_macro(node):
            self.add(Deletion(*self.range(node), ("",)), context)
        self.visit(node, context)

    def _acts(self, node):
        if node.kind == K.UNARY_OPERATOR:
            before, behind, _ = self.unary_operator(node)
            return (before or behind) in operators.STEPS
        return node.kind in (K.CALL_EXPR, K.COMPOUND_ASSIGNMENT_OPERATOR) or self.infix_operator(node) == "="

    def _statements(self, nodes, context):
        for node in nodes:
            self._statement(node, context)

    def _block(self, node, context):
        self._statements(node.get_children(), context)

    def _parts(self, node):
        """Children in the parentheses behind the keyword by the number of semicolons before them, and children
        behind the parentheses."""
        found = self.source.header(node.extent.start.offset)
        if found is None:
            return [], list(node.get_children())
        end, semicolons = found
        inside, behind = [], []
        for child in node.get_children():
            start = child.extent.start.offset
            if start < end:
                inside.append((sum(semicolon < start for semicolon in semicolons), child))
            else:
                behind.append(child)
        return inside, behind

    def _branch(self, node, context, of_condition):
        inside, bodies = self._parts(node)
        last = max((part for part, _ in inside), default=0)
        deciding = [child for part, child in inside if part == last]
        for part, child in inside:
            if part == last and len(deciding) == 1 and child.kind.is_expression():
                self.condition(child, of_condition)
            else:
                self.visit(child, context)
        self._statements(bodies, context)

    def _if(self, node, context):
        fixed = re.match(r"if\s+constexpr\b", without_comments(self.text(node)))
        self._branch(node, context, context.needed("if constexpr") if fixed else context)

    def _while(self, node, context):
        self._branch(node, context, replace(context, in_loop=True))

    def _do(self, node, context):
        body, condition = node.get_children()
        self._statement(body, context)
        self.condition(condition, replace(context, in_loop=True))

    def _for(self, node, context):
        shared = "for" in self.source.directive_before(node.extent.start.offset)
        head = context.needed("OpenMP loop") if shared else context
        inside, bodies = self._parts(node)
        for part, child in inside:
            if part == 1:
                self.condition(child, replace(head, in_loop=True))
            else:
                self.visit(child, head)
        self._statements(bodies, context)

    def _for_range(self, node, context):
        inside, bodies = self._parts(node)
        self.each((child for _, child in inside), context)
        self._statements(bodies, context)

    def _case(self, node, context):
        label, *bodies = node.get_children()
        self.visit(label, context.needed("case label"))
        self._statements(bodies, context)
