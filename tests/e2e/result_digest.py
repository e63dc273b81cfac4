#!/usr/bin/env python3
"""One line with a SHA-256 over all files that the programs write, for each project and mode.

Shows that a change of the code changes no byte: keep the list of the programs before it, compare with those after.
QNL3DFROZENLAYER and FROZENLAYER name the two programs, QNL_EXAMPLES the examples (default: those of this source).

    result_digest.py --out before.txt        result_digest.py --compare before.txt

Every project is run at each number of threads with a fresh and with the stored search, and once silently (but for log
level 2, which changes results); all must write the same. Logs, which hold times, stay out; so does the record of the
inputs that a result was made from, as if it had never been written. Exit status: 0; 1 if runs
or lists differ.

A line holds the digest, the program's exit status, the number of files (or texts), and the name; the last line is the
digest of all others.
"""

import argparse
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass

from bare_result import without_record
from digest_projects import FOLLOWED_MODE, FOLLOWERS, MODES, Programs, all_projects, run_command, short_projects

LOG, SINK_FILE = ".lgz", "_Sink.k4w"
TIMES = ((re.compile(r"\S+ seconds\b"), "# seconds"), (re.compile(r"(evaluated in) \S+ s\b"), r"\1 # s"))
ALL = "all"
# Waiting threads that spin would slow a busy machine down.
ENVIRONMENT = {**os.environ, "OMP_WAIT_POLICY": "passive"}
# What it is -> (files of an earlier run that stay, messages)
PASSES = {"fresh search": ((), True), "stored search": ((".sur", ".thk"), True), "silent": ((".sur", ".thk"), False)}
REPEATED_PASSES = ("fresh search", "stored search")
DIAGNOSTICS = 2  # from this log level on the flake intensity stands in place of the average temperature


def digest_of_files(files):
    """`files`: path -> bytes."""
    digest = hashlib.sha256()
    for path, content in sorted(files.items()):
        content = without_record(content)
        digest.update(f"{path}\0{len(content)}\0".encode())
        digest.update(content)
    return digest.hexdigest()


def masked(text):
    for pattern, replacement in TIMES:
        text = pattern.sub(replacement, text)
    return text


@dataclass
class Outcome:
    """What one run left behind."""

    status: int
    files: dict  # path -> bytes, without logs
    texts: dict  # standard output, standard error and logs, times masked


class WorkFolder:
    """The folder that the programs run in; knows which of its files the last program wrote."""

    def __init__(self, path):
        self.path = pathlib.Path(path)
        self.inputs = {}

    def take_as_inputs(self):
        self.inputs = self._files()

    def _files(self):
        found = (path for path in sorted(self.path.rglob("*")) if path.is_file())
        return {path.relative_to(self.path).as_posix(): path.read_bytes() for path in found}

    def written(self):
        files = self._files()
        changed = [name for name, content in self.inputs.items() if files.get(name) != content]
        if changed:
            raise RuntimeError(f"the program changed or removed its input: {', '.join(changed)}")
        return {name: content for name, content in files.items() if name not in self.inputs}

    def remove_written(self, kept=()):
        for name in self.written():
            if not name.endswith(kept or "\0"):
                (self.path / name).unlink()

    def run(self, program, words, typed=""):
        """`words`: argument 0 included."""
        done = subprocess.run(
            words,
            executable=program,
            cwd=self.path,
            env=ENVIRONMENT,
            input=typed,
            capture_output=True,
            encoding="utf-8",
            timeout=600,
            check=False,
        )
        if done.returncode < 0:
            raise RuntimeError(f"signal {-done.returncode} ended {' '.join(words)}")
        files = self.written()
        texts = {"standard output": masked(done.stdout), "standard error": masked(done.stderr)}
        texts |= {name: masked(files.pop(name).decode()) for name in list(files) if name.endswith(LOG)}
        return Outcome(done.returncode, files, texts)


class Digest:
    """Lines by name, and what differed between runs that must agree."""

    def __init__(self, programs, threads, with_texts=False):
        self.programs, self.threads, self.with_texts = programs, threads, with_texts
        self.lines, self.differences = {}, []

    def add_project(self, project):
        with tempfile.TemporaryDirectory(prefix="digest-") as path:
            work = WorkFolder(path)
            project.bring(work.path)
            work.take_as_inputs()
            if project.made_by:
                self._make(work, project)
            for mode in MODES:
                self._add_mode(work, project, mode)
                if mode == FOLLOWED_MODE and project.has_surface_files:
                    self._add_followers(work, project)
                work.remove_written()

    def _add(self, name, outcome):
        self.lines[name] = f"{digest_of_files(outcome.files)} {outcome.status} {len(outcome.files)}"

    def _add_texts(self, name, outcomes):
        texts = {
            f"{number} {kind}": text.encode()
            for number, outcome in enumerate(outcomes)
            for kind, text in outcome.texts.items()
        }
        self.lines[name + ", texts"] = f"{digest_of_files(texts)} {outcomes[0].status} {len(texts)}"

    def _follow(self, work, name, words):
        outcome = work.run(self.programs.people, [self.programs.people, *words])
        self._add(name, outcome)
        if self.with_texts:
            self._add_texts(name, [outcome])
        return outcome

    def _make(self, work, project):
        outcome = self._follow(work, f"{project.name} | made", project.made_by)
        if outcome.status != 0:
            raise RuntimeError(f"{project.name} cannot be made: {outcome.texts['standard error']}")
        work.take_as_inputs()

    def _add_followers(self, work, project):
        before = work.inputs
        for name, words in FOLLOWERS.items():
            work.take_as_inputs()
            self._follow(work, f"{project.name} | {name}", words)
        work.inputs = before

    def _add_mode(self, work, project, mode):
        name = f"{project.name} | {mode}"
        first = None
        for threads in [1] if project.single_thread else self.threads:
            passes = PASSES if first is None and project.log_level < DIAGNOSTICS else REPEATED_PASSES
            outcomes = [self._run(work, project, mode, threads, *PASSES[what]) for what in passes]
            if first is None:
                first = outcomes[0]
                self._add(name, first)
                if self.with_texts:
                    self._add_texts(name, outcomes)
            for what, outcome in zip(passes, outcomes):
                self._check_same(f"{name}, {threads} threads, {what}", first, outcome, PASSES[what][1])

    def _run(self, work, project, mode, threads, kept, loud):
        work.remove_written(kept)
        log_level = project.log_level if loud else 0
        return work.run(*run_command(project, mode, self.programs, threads, log_level), project.typed)

    def _check_same(self, name, first, outcome, loud):
        """A silent run writes no sink file."""
        wanted = {path: content for path, content in first.files.items() if loud or not path.endswith(SINK_FILE)}
        paths = sorted(wanted.keys() | outcome.files.keys())
        faults = [path for path in paths if wanted.get(path) != outcome.files.get(path)]
        if first.status != outcome.status:
            faults.append(f"exit status {outcome.status} after {first.status}")
        if faults:
            self.differences.append(f"{name}: differs from the first run: {', '.join(faults)}")

    def text(self):
        """The whole list, the digest of its lines at the end."""
        lines = [f"{value} {name}\n" for name, value in self.lines.items()]
        total = hashlib.sha256("".join(lines).encode()).hexdigest()
        return "".join(lines) + f"{total} - {len(lines)} {ALL}\n"


def read_list(path):
    """The text of an earlier list, if it is a whole one."""
    try:
        text = path.read_text(encoding="utf-8")
    except (OSError, UnicodeDecodeError) as error:
        sys.exit(f"{path} cannot be read: {error}")
    if not text.endswith(f" {ALL}\n") or any(len(line.split(" ", 3)) != 4 for line in text.splitlines()):
        sys.exit(f"{path} is no list of this script: lines of four words are expected, the last one named '{ALL}'")
    return text


def parse(text):
    """Name -> (digest, exit status, number of files), of the lines of a list."""
    rows = [line.split(" ", 3) for line in text.splitlines()]
    return {name: tuple(values) for *values, name in rows}


def compare(earlier, now, whole):
    """Sentences on the lines that differ; when `whole`, also on those that are now missing."""
    before, after = parse(earlier), parse(now)
    faults = []
    for name in sorted((before.keys() | after.keys()) - {ALL}):
        if name not in before:
            faults.append(f"not in the earlier list: {name}")
        elif name not in after:
            faults += [f"only in the earlier list: {name}"] if whole else []
        elif before[name] != after[name]:
            faults.append(f"differs: {name}")
    return faults


def read_words(words):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument(
        "--threads",
        type=lambda text: [int(t) for t in text.split(",")],
        default=[1, 2],
        metavar="N,...",
        help="numbers of threads (default: 1,2)",
    )
    parser.add_argument("--texts", action="store_true", help="lines for printed texts and logs, of one thread")
    parser.add_argument("--short", action="store_true", help="only a few small projects")
    parser.add_argument("--only", default="", metavar="TEXT", help="only projects whose name contains it")
    parser.add_argument("--out", type=pathlib.Path, metavar="FILE", help="write the list there")
    parser.add_argument("--compare", type=pathlib.Path, metavar="FILE", help="name the lines that differ from a list")
    chosen = parser.parse_args(words)
    if chosen.texts and chosen.threads[0] != 1:
        parser.error(
            "--texts takes the texts of one thread, as several share the counts they print as it happens: "
            "name 1 first in --threads"
        )
    return chosen


def programs_of_environment(variables):
    found = {name: variables.get(name, "") for name in ("QNL3DFROZENLAYER", "FROZENLAYER")}
    for name, path in found.items():
        if not os.path.isfile(path):
            sys.exit(f"{name}: the path of a program is expected in this variable, found '{path}'")
    return Programs(*(os.path.abspath(path) for path in found.values()))


def main(words):
    chosen = read_words(words)
    earlier = read_list(chosen.compare) if chosen.compare else ""
    everything = short_projects() if chosen.short else all_projects()
    projects = [project for project in everything if chosen.only in project.name]
    if not projects:
        sys.exit(f"no project's name contains '{chosen.only}'")
    digest = Digest(programs_of_environment(os.environ), chosen.threads, chosen.texts)
    for project in projects:
        print(project.name, file=sys.stderr, flush=True)
        digest.add_project(project)
    print(digest.text(), end="")
    if chosen.out:
        chosen.out.write_text(digest.text(), encoding="utf-8")
    faults = list(digest.differences)
    if chosen.compare:
        faults += compare(earlier, digest.text(), whole=not (chosen.short or chosen.only))
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
