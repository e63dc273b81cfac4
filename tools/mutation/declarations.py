"""Constants, and the functions that the compiler may evaluate. Part of the finder."""
import re
from dataclasses import replace

from clang.cindex import CursorKind as K
from clang.cindex import TypeKind

from expressions import NUMBER_TYPES
from sites import Declaration
from source_text import without_comments

FUNCTIONS = (K.FUNCTION_DECL, K.CXX_METHOD, K.FUNCTION_TEMPLATE, K.CONVERSION_FUNCTION, K.CONSTRUCTOR, K.DESTRUCTOR)
VARIABLES = (K.VAR_DECL, K.FIELD_DECL, K.PARM_DECL)
CLASSES = (K.CLASS_DECL, K.STRUCT_DECL, K.CLASS_TEMPLATE, K.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION)
NAMESPACES = (K.NAMESPACE, K.TRANSLATION_UNIT)
INTEGER_TYPES = NUMBER_TYPES - {TypeKind.FLOAT, TypeKind.DOUBLE, TypeKind.LONGDOUBLE}


class Declarations:
    def declaration_handlers(self):
        return {
            **dict.fromkeys(VARIABLES, self._variable),
            **dict.fromkeys(FUNCTIONS, self._function),
            K.DECL_REF_EXPR: self._reference,
            K.MEMBER_REF_EXPR: self._reference,
        }

    def note_all(self, node, context):
        """Notes the references in an expression that has no sites of its own."""
        for child in node.walk_preorder():
            if child.kind == K.DECL_REF_EXPR:
                self._note(child, context)

    def _note(self, reference, context):
        if not context.declaration and not context.constant:
            return
        target = reference.referenced
        if target is None or target.location.file is None:
            return
        key = (self.real(target.location.file.name), target.location.offset)
        (context.declaration.uses if context.declaration else self.pinned).add(key)

    def _reference(self, node, context):
        """What stands behind the name are template arguments."""
        self._note(node, context)
        for child in node.get_children():
            behind = node.kind == K.DECL_REF_EXPR or child.extent.start.offset > node.location.offset
            self.visit(child, context.needed("template argument") if behind else context)

    def _variable(self, node, context):
        name = node.location.offset
        own = self._constant(node, context) if node.kind == K.VAR_DECL and not context.constant else context
        for child in node.get_children():
            before = self.source.before(child.extent.start.offset)
            if child.extent.start.offset < name:
                self.visit(child, context.needed("type"))
            elif before == "[":
                self.visit(child, context.needed("array size"))
            elif before == ":" and node.kind == K.FIELD_DECL:
                self.visit(child, context.needed("bit field"))
            else:
                self.visit(child, own)

    def _function(self, node, context):
        name = node.location.offset
        body = self._body_context(node, context)
        for child in node.get_children():
            initialiser = node.kind == K.CONSTRUCTOR and child.extent.start.offset > name
            if child.kind == K.PARM_DECL:
                self.visit(child, context)
            elif child.kind == K.COMPOUND_STMT or initialiser:
                self.visit(child, body)
            else:
                self.visit(child, context.needed("type"))

    def _body_context(self, node, context):
        match = self._constexpr(node)
        if match is None or context.constant:
            return context
        if node.kind == K.CONSTRUCTOR:
            return context.needed("constexpr constructor")
        return self._declare(node, context, match, "" if "inline" in self._specifiers(node) else "inline")

    def _constant(self, node, context):
        """Context of the initialiser of a variable."""
        match = self._constexpr(node)
        integer = node.type.is_const_qualified() and node.type.get_canonical().kind in INTEGER_TYPES
        if match is None and not integer:
            return context
        return self._declare(node, context, match, self._variable_specifiers(node) if match else "")

    def _constexpr(self, node):
        """Match of the word before the name; its offsets count from the start of the declaration."""
        return re.search(r"\bconstexpr\b", self.source.slice(node.extent.start.offset, node.location.offset))

    def _specifiers(self, node):
        before_name = self.source.slice(node.extent.start.offset, node.location.offset)
        return re.findall(r"\w+", without_comments(before_name))

    def _variable_specifiers(self, node):
        """In place of `constexpr`, for a variable that is set when the program starts, or is first there."""
        words = self._specifiers(node)
        const = "" if "const" in words else " const"
        parent = node.semantic_parent.kind
        if parent in CLASSES:
            return ("" if "inline" in words else "inline") + const
        internal = const or "inline" in words
        needs_static = "static" not in words and not (parent in NAMESPACES and internal)
        return ("static" if needs_static else "") + const

    def _declare(self, node, context, match, substitute):
        start, name = node.extent.start.offset, node.location.offset
        token = (start + match.start(), start + match.end()) if match else ()
        declaration = Declaration((self.path, name), self.source.line_of(name), token, substitute)
        if context.declaration:  # a constant in a function that the compiler may evaluate stands and falls with it
            declaration.uses.add(context.declaration.key)
            context.declaration.uses.add(declaration.key)
        self.declarations.append(declaration)
        return replace(context, declaration=declaration)
