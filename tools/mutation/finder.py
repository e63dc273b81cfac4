"""Finds the sites of one source file in the syntax tree that libclang gives."""
import os
from dataclasses import dataclass, replace

from clang.cindex import CursorKind as K

from declarations import Declarations
from expressions import Expressions
from statements import Statements

TRANSPARENT = {K.PAREN_EXPR, K.UNEXPOSED_EXPR}
# Only types and constant expressions lie in these.
CONSTANT = {
    K.ENUM_CONSTANT_DECL: "enumerator",
    K.TYPE_ALIAS_DECL: "type",
    K.TYPE_ALIAS_TEMPLATE_DECL: "type",
    K.TYPEDEF_DECL: "type",
    K.CXX_BASE_SPECIFIER: "type",
    K.TEMPLATE_NON_TYPE_PARAMETER: "template parameter",
    K.TEMPLATE_TYPE_PARAMETER: "template parameter",
}
# Nothing in these runs; static_assert is itself a test.
SKIPPED = {K.STATIC_ASSERT, K.CXX_TYPEID_EXPR, K.CXX_UNARY_EXPR}


@dataclass(frozen=True)
class Context:
    """What lies around a node and decides how its sites may be mutated."""

    constant: str = ""  # why the compiler needs the value
    declaration: object = None  # the constant or function the compiler may evaluate
    skipped: frozenset = frozenset()  # alternatives that another site has already
    in_loop: bool = False  # decides whether a loop goes on

    def inside(self):
        """For what is not itself the condition."""
        return replace(self, skipped=frozenset(), in_loop=False)

    def needed(self, why):
        """For what the compiler evaluates whatever becomes of the declaration around it."""
        return replace(self, constant=self.constant or why, declaration=None)


class Finder(Expressions, Statements, Declarations):
    """Sites and declarations of one file, in the order of the tree, outer before inner."""

    def __init__(self, path, source):
        self.path = str(path)
        self.source = source
        self.sites = []
        self.declarations = []
        self.pinned = set()  # keys of declarations whose value the compiler needs
        self._taken = set()
        self._macros = []
        self._files = {}
        self._handlers = {**self.expression_handlers(), **self.statement_handlers(), **self.declaration_handlers()}

    def search(self, unit):
        here = [node for node in unit.cursor.get_children() if self._is_here(node)]
        self._macros = [self.range(node) for node in here if node.kind == K.MACRO_INSTANTIATION]
        for node in here:
            if not node.kind.is_preprocessing():
                self.visit(node, Context())

    def visit(self, node, context):
        if node.kind in SKIPPED or node.kind.is_attribute() or not self._is_here(node):
            return
        if node.kind.is_expression() and self.in_macro(node):
            self.note_all(node, context)
            return
        if node.kind in CONSTANT:
            context = context.needed(CONSTANT[node.kind])
        self._handlers.get(node.kind, self.inside)(node, context)

    def inside(self, node, context):
        """The children of a node, whatever it is itself."""
        self.each(node.get_children(), context if node.kind in TRANSPARENT else context.inside())

    def each(self, nodes, context):
        for node in nodes:
            self.visit(node, context)

    def add(self, site, context):
        """Keeps the site, unless a node of the same place, which the parser made up, has brought it before."""
        key = (site.start, site.end, type(site))
        if site.alternatives and key not in self._taken:
            self._taken.add(key)
            site.constant = context.constant
            site.declaration = context.declaration
            self.sites.append(site)

    def _is_here(self, node):
        file = node.extent.start.file
        return file is not None and self.real(file.name) == self.path

    def real(self, name):
        if name not in self._files:
            self._files[name] = os.path.realpath(name)
        return self._files[name]

    @staticmethod
    def range(node):
        return node.extent.start.offset, node.extent.end.offset

    def text(self, node):
        return self.source.slice(*self.range(node))

    def in_macro(self, node):
        start, end = self.range(node)
        return any(first <= start and end <= last for first, last in self._macros)

    @staticmethod
    def core(node):
        """Without parentheses and conversions."""
        while node.kind in TRANSPARENT:
            children = list(node.get_children())
            if len(children) != 1:
                break
            node = children[0]
        return node
