"""All mutants of the chosen files in one build."""
import os
import pathlib
from dataclasses import dataclass

from finder import Finder
from project import SOURCE_SUFFIXES, SUFFIXES, ProjectError, compiler_faults, project_files
from rewriting import Rewriter, loosened_declarations, pinned_declarations, plain_text
from sites import Mutant
from source_text import SourceText

MOST_ATTEMPTS = 30


@dataclass
class File:
    path: pathlib.Path
    source: SourceText
    sites: list
    declarations: list


def chosen_files(root, folders):
    """Source files and headers in the folders, or the files themselves, relative to the project."""
    files = project_files(root)
    return [
        path
        for path in files
        if path.suffix in SUFFIXES and any(folder == path or folder in path.parents for folder in folders)
    ]


def included_files(unit):
    return {os.path.realpath(include.include.name) for include in unit.get_includes()}


class Schemata:
    def __init__(self, project, paths):
        self.project = project
        self.files, self.mutants = [], []
        self._pinned = set()  # keys of declarations whose values the compiler is seen to need
        self._refused = {}  # what the compiler said of a mutant, by its number
        self.unseen = self._read(set(paths))
        self.files.sort(key=lambda file: file.path)
        self._number()
        pinned_declarations(self._declarations, self._pinned)

    def _read(self, waiting):
        """Searches the files: sources in their own syntax tree, headers in the first that includes them. Gives the
        files that no tree has."""
        near = {path.parent for path in waiting}
        chosen = [path for path in self.project.sources() if path in waiting]
        others = sorted(set(self.project.sources()) - set(chosen), key=lambda path: (path.parent not in near, path))
        for path in chosen + others:
            headers = {header for header in waiting if header.suffix not in SOURCE_SUFFIXES}
            if path in chosen or headers:
                waiting = waiting - self._search(path, headers | ({path} & waiting))
        return waiting

    def _search(self, source, wanted):
        """Those of the wanted files that the syntax tree of a source has."""
        try:
            unit = self.project.syntax_tree(source)
        except ProjectError:
            if source in wanted:
                raise
            return set()
        included = included_files(unit)
        found = {path for path in wanted if path == source or str(self.project.root / path) in included}
        for path in found:
            full = self.project.root / path
            finder = Finder(full, SourceText(full))
            finder.search(unit)
            self._pinned |= finder.pinned
            self.files.append(File(path, finder.source, finder.sites, finder.declarations))
        return found

    def _number(self):
        for file in self.files:
            count = {}
            for site in file.sites:
                for alternative in site.alternatives:
                    site.mutants.append(self._mutant(file, site, alternative, count))
                    self.mutants.append(site.mutants[-1])

    def _mutant(self, file, site, alternative, count):
        line = file.source.line_of(site.start)
        after = plain_text(site.shown(alternative), file.source)
        before = plain_text([site.whole], file.source)
        mutation = f"{before} -> {after}"
        count[line, mutation] = count.get((line, mutation), 0) + 1
        if count[line, mutation] > 1:
            mutation += f" #{count[line, mutation]}"
        return Mutant(
            len(self.mutants) + 1, site, alternative, str(file.path), line, file.source.line_text(line), mutation
        )

    @property
    def _declarations(self):
        return [declaration for file in self.files for declaration in file.declarations]

    def why_alone(self, mutant):
        """Why the mutant needs a build of its own; empty when it is in the common one."""
        declaration = mutant.site.declaration
        if mutant.site.constant or (declaration is not None and declaration.pinned):
            return mutant.site.constant or "the compiler needs the value"
        return self._refused.get(mutant.number, "")

    def _active(self, site):
        return [(m.number, m.alternative) for m in site.mutants if not self.why_alone(m)]

    def rewritten(self, file, forced=None):
        """The file with the schemata of all its sites; with `forced`, that mutant in place of its site's."""

        def pieces(site):
            if forced is not None and site is forced.site:
                return ["(", *site.replacement(forced.alternative), ")"]
            active = self._active(site)
            return site.schema(active) if active else None

        active = [site for file in self.files for site in file.sites if self._active(site)]
        loosened = loosened_declarations(self._declarations, active)
        own = [declaration for declaration in loosened if declaration in file.declarations]
        return Rewriter(file.source, file.sites, own).rewrite(pieces)

    def write(self, forced=None):
        rewritten = {}
        for file in self.files:
            mine = forced if forced is not None and forced.file == str(file.path) else None
            rewritten[file.path] = self.rewritten(file, mine)
        self.project.copy({path: text.text.encode("latin-1") for path, text in rewritten.items()})
        return rewritten

    def build(self, targets, tell):
        """Builds the tests with all mutants. What the compiler refuses is taken out, to be tried alone."""
        for _ in range(MOST_ATTEMPTS):
            rewritten = self.write()
            output = self.project.build(targets)
            if output is None:
                return
            before = self._taken_out()
            for message, places in compiler_faults(output, self.project.build_folder):
                self._take_out(message, places, rewritten)
            if self._taken_out() == before:
                break
            tell(f"the compiler refuses {self._taken_out() - before} mutants or constants; building without them")
        raise ProjectError("the scratch copy does not build:\n" + output[-6000:])

    def _taken_out(self):
        return len(self._refused) + sum(declaration.pinned for declaration in self._declarations)

    def _refuse(self, site, message):
        self._refused.update((mutant.number, message) for mutant in site.mutants)

    def _take_out(self, message, places, rewritten):
        by_path = {self.project.tree / file.path: (file, rewritten[file.path]) for file in self.files}
        known = [(*by_path[path], line, column) for path, line, column in places if path in by_path]
        if "constant" in message or "constexpr" in message or "captured" in message:
            for file, _, line, _ in reversed(known):
                if self._pin_line(file, line):
                    return
        for _, text, line, column in known:
            site = text.innermost(line, column)
            if site is not None:
                self._refuse(site, message)
                return
        for file, text, line, _ in known:
            sites = text.on_line(line)
            for site in sites:
                self._refuse(site, message)
            if sites or self._pin_line(file, line):
                return

    def _pin_line(self, file, line):
        """Gives the constants declared on a line back to the compiler."""
        there = [d for d in file.declarations if d.line == line and not d.pinned]
        pinned_declarations(self._declarations, [declaration.key for declaration in there])
        return bool(there)
