"""One run of the tool: copy, find, build, try, report."""
import concurrent.futures
import pathlib
import sys
import threading
import time

from equivalent import read_equivalent, take_out
from project import Project, ProjectError
from report import ALIVE, EQUIVALENT, NOT_COMPILED, NOT_REACHED, NOT_TRIED, listed, table, write_json
from schemata import Schemata, chosen_files
from unit_tests import Runner, check_and_record, known_cases, try_mutant

OFTEN = 500  # mutants between two words of progress


class Session:
    def __init__(self, options):
        self.options = options
        self.root = options.source.resolve()
        self.scratch = (options.scratch or self.root / "build" / "mutation").resolve()
        self.folders = [self._inside(folder) for folder in options.folders]
        self.project = Project(self.root, self.scratch, options.jobs)
        self._start = time.monotonic()
        self._done = 0
        self._local = threading.local()

    def _inside(self, name):
        """Path from the project on."""
        path = (self.root / name).resolve()
        if not path.exists() or self.root not in path.parents:
            raise ProjectError(f"{name}: no folder or file of {self.root}")
        return path.relative_to(self.root)

    def _say(self, text):
        print(f"[{time.monotonic() - self._start:6.1f} s] {text}", file=sys.stderr, flush=True)

    def run(self):
        self.project.copy({})
        self.project.configure(self.options.cmake, self.options.flags)
        self.schemata = Schemata(self.project, chosen_files(self.root, self.folders))
        for path in sorted(self.schemata.unseen):
            self._say(f"{path}: not part of the build, not tried")
        self._find_targets()
        self._pass_over_equivalent()
        self._say(f"{len(self.schemata.mutants)} mutants in {len(self.schemata.files)} files")
        self.schemata.build(self.all_targets, self._say)
        self._record_reach()
        self._try_built()
        if self.options.rebuild:
            self._try_rebuilt()
        self._report()

    def _find_targets(self):
        """Test executables by file."""
        self.executables = self.project.executables()
        named = dict(map(self._named_tests, self.options.tests))
        self.targets = {str(file.path): self._targets_of(file.path, named) for file in self.schemata.files}
        self.all_targets = sorted({target for targets in self.targets.values() for target in targets})
        for target in self.all_targets:
            if target not in self.executables:
                raise ProjectError(f"{target}: no executable of the build; there are {', '.join(self.executables)}")

    def _named_tests(self, entry):
        folder, equals, targets = entry.partition("=")
        if not equals or not targets:
            raise ProjectError(f"--tests {entry}: expected FOLDER=TARGET[,TARGET]")
        return self._inside(folder), targets.split(",")

    def _targets_of(self, path, named):
        for folder in (path, *path.parents):
            if folder in named:
                return named[folder]
        for part in path.parts[:-1]:
            if f"test_{part}" in self.executables:
                return [f"test_{part}"]
        raise ProjectError(f"{path}: no test executable for any folder of its path; name one with --tests")

    def _pass_over_equivalent(self):
        path = self.options.equivalent or self.root / "tests" / "mutation" / "equivalent.txt"
        files = {str(file.path) for file in self.schemata.files}
        entries = [entry for entry in read_equivalent(path) if entry.split(" | ")[0] in files]
        self.considered, unused = take_out(self.schemata.mutants, entries)
        for entry in unused:
            self._say(f"{path}: there is no such mutant: {entry}")
        for mutant in self.schemata.mutants:
            mutant.status = EQUIVALENT
        for mutant in self.considered:
            mutant.status = NOT_TRIED

    def _record_reach(self):
        """By target: its tests, and the numbers of the mutants that each reaches."""
        known = known_cases(self.project.build_folder)
        runner = Runner(self.scratch / "run" / "first", self.options.memory)
        self.reaching = {}
        for target in self.all_targets:
            cases = known.get(str(self.executables[target]), [])
            if not cases:
                raise ProjectError(f"{target}: CTest knows no test of it")
            reached = check_and_record(cases, len(self.schemata.mutants), runner, self.scratch / "reached")
            self.reaching[target] = list(zip(cases, reached))

    def _try_built(self):
        for mutant in self.considered:
            mutant.by = self.schemata.why_alone(mutant)
        trials = [mutant for mutant in self.considered if not mutant.by]
        self._say(f"all tests pass without a mutant; trying {len(trials)}")
        start = time.monotonic()
        with concurrent.futures.ThreadPoolExecutor(self.options.jobs) as pool:
            list(pool.map(self._try, trials))
        self.seconds_each = (time.monotonic() - start) / max(len(trials), 1)

    def _runner(self):
        """One for each thread."""
        if not hasattr(self._local, "runner"):
            folder = self.scratch / "run" / str(threading.get_ident())
            self._local.runner = Runner(folder, self.options.memory)
        return self._local.runner

    def _try(self, mutant):
        cases = [
            case
            for target in self.targets[mutant.file]
            for case, reached in self.reaching[target]
            if mutant.number in reached
        ]
        if cases:
            mutant.status, mutant.by = try_mutant(mutant.number, cases, self._runner())
        else:
            mutant.status = NOT_REACHED
        self._done += 1
        if self._done % OFTEN == 0:
            self._say(f"{self._done} tried")

    def _try_rebuilt(self):
        left = [mutant for mutant in self.considered if mutant.status == NOT_TRIED]
        self._say(f"building {len(left)} mutants alone")
        for mutant in left:
            self.schemata.write(mutant)
            if self.project.build(self.targets[mutant.file]) is not None:
                mutant.status = NOT_COMPILED
                continue
            cases = [case for target in self.targets[mutant.file] for case, _ in self.reaching[target]]
            mutant.status, mutant.by = try_mutant(0, cases, self._runner())
        self.schemata.write()

    def _report(self):
        by_folder = {
            str(folder): [
                mutant
                for mutant in self.schemata.mutants
                if folder in (pathlib.Path(mutant.file), *pathlib.Path(mutant.file).parents)
            ]
            for folder in self.folders
        }
        seconds = time.monotonic() - self._start
        print(listed(self.schemata.mutants, (*ALIVE, NOT_TRIED)) + "\n")
        print(table(by_folder))
        print(f"{seconds:.0f} s in all, {self.seconds_each:.3f} s for each mutant of the common build")
        if self.options.json:
            write_json(self.options.json, by_folder, seconds)
