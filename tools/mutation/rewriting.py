"""The text of a file in which every mutant can be chosen, and where its sites came to lie."""
import bisect
import re
from dataclasses import dataclass

from sites import Declaration
from source_text import readable


def pinned_declarations(declarations, keys):
    """Marks the declarations whose values the compiler needs, given the keys of those it is asked for directly."""
    by_key = {declaration.key: declaration for declaration in declarations}
    waiting = [by_key[key] for key in keys if key in by_key]
    while waiting:
        declaration = waiting.pop()
        if not declaration.pinned:
            declaration.pinned = True
            waiting += [by_key[key] for key in declaration.uses if key in by_key]


def loosened_declarations(declarations, sites):
    """Declarations that are left to the run: those with mutants, and those that depend on them."""
    loosened = {site.declaration.key for site in sites if site.declaration and not site.declaration.pinned}
    free = [declaration for declaration in declarations if not declaration.pinned]
    grown = True
    while grown:
        more = {d.key for d in free if d.key not in loosened and d.uses & loosened}
        loosened |= more
        grown = bool(more)
    return [declaration for declaration in free if declaration.key in loosened]


@dataclass
class Rewritten:
    text: str
    spans: list  # (start, end, site) in the new text, inner after outer

    def offset(self, line, column):
        starts = [0] + [match.end() for match in re.finditer("\n", self.text)]
        return starts[min(line, len(starts)) - 1] + column - 1

    def innermost(self, line, column):
        """The smallest site around a place; None outside of all."""
        offset = self.offset(line, column)
        around = [(end - start, site) for start, end, site in self.spans if start <= offset < end]
        return min(around, key=lambda pair: pair[0])[1] if around else None

    def on_line(self, line):
        """All sites that begin on the line."""
        begin, end = self.offset(line, 1), self.offset(line + 1, 1)
        return [site for start, _, site in self.spans if begin <= start < end]


class Rewriter:
    """Writes one file. Edits nest or lie apart: schemata of sites, and tokens of declarations."""

    def __init__(self, source, sites, declarations):
        edits = [(site.start, -site.end, order, site) for order, site in enumerate(sites)]
        edits += [
            (declaration.token[0], -declaration.token[1], -1, declaration)
            for declaration in declarations
            if declaration.token
        ]
        self._edits = sorted(edits, key=lambda edit: edit[:3])
        self._starts = [edit[0] for edit in self._edits]
        self._source = source

    def rewrite(self, pieces_of):
        """`pieces_of` gives the pieces of a site, or None to leave it."""
        self._pieces_of = pieces_of
        self._out, self._length, self._spans = [], 0, []
        self._range(0, len(self._source.text), 0)
        return Rewritten("".join(self._out), self._spans)

    def _emit(self, text):
        self._out.append(text)
        self._length += len(text)

    def _range(self, start, end, first):
        """Writes a range; edits before number `first` are done already, or under way around it."""
        position = start
        index = max(first, bisect.bisect_left(self._starts, start))
        while index < len(self._edits) and self._edits[index][0] < end:
            edit_start, edit_end, _, edit = self._edits[index]
            index += 1
            if edit_start < position or -edit_end > end:
                continue
            pieces = self._pieces(edit)
            if pieces is not None:
                self._emit(self._source.slice(position, edit_start))
                self._write(edit, pieces, index)
                position = -edit_end
        self._emit(self._source.slice(position, end))

    def _pieces(self, edit):
        return [edit.substitute] if isinstance(edit, Declaration) else self._pieces_of(edit)

    def _write(self, edit, pieces, index):
        begin, place = self._length, len(self._spans)
        for piece in pieces:
            if isinstance(piece, str):
                self._emit(piece)
            else:
                self._range(*piece, index)
        if not isinstance(edit, Declaration):
            self._spans.insert(place, (begin, self._length, edit))


def plain_text(pieces, source):
    """Pieces with the original text in the ranges, on one line."""
    return readable("".join(piece if isinstance(piece, str) else source.slice(*piece) for piece in pieces))
