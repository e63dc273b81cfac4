"""Runs unit tests, of GoogleTest or any other, with a mutant chosen."""
import json
import math
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
from dataclasses import dataclass, field

from project import ProjectError

CHOICE, RECORD = "MUTANT", "MUTANTS_REACHED"
FILTER = "--gtest_filter="
MOST_NAMES = 400  # of tests on a command line
STOP_AT_ONCE = ["--gtest_fail_fast", "--gtest_brief=1"]
QUICK = 0.05  # seconds; slower tests are run alone, after the quick ones
FAILED = re.compile(r"^\[  FAILED  \] (\S+?)[,.]?(?: |$)", re.M)
CPU_FACTOR, CPU_LEAST = 10.0, 2  # seconds of processor time a mutant may take, as against the tests without it
WALL_FACTOR = 10  # for mutants that wait for ever
LARGEST_FILE = 256 << 20

KILLED, TIMED_OUT, SURVIVED = "killed", "timed out", "survived"


@dataclass
class Case:
    """One test that CTest knows."""

    name: str
    command: list
    folder: str
    environment: dict = field(default_factory=dict)
    seconds: float = 0.0  # of processor time, without a mutant

    @property
    def filter(self):
        return next((a[len(FILTER) :] for a in self.command if a.startswith(FILTER)), None)

    @property
    def program(self):
        return self.command[0], self.folder, tuple(sorted(self.environment.items()))


def known_cases(build_folder):
    """The tests of the build by executable."""
    done = subprocess.run(
        ["ctest", "--show-only=json-v1"], cwd=build_folder, capture_output=True, text=True, check=True
    )
    cases = {}
    for test in json.loads(done.stdout)["tests"]:
        properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
        if not test.get("command") or properties.get("DISABLED"):
            continue
        environment = dict(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
        folder = properties.get("WORKING_DIRECTORY", str(build_folder))
        cases.setdefault(test["command"][0], []).append(Case(test["name"], test["command"], folder, environment))
    return cases


@dataclass
class Ending:
    code: int  # negative: the signal; None: stopped
    output: str

    @property
    def status(self):
        if self.code == 0:
            return SURVIVED
        return TIMED_OUT if self.code in (None, -signal.SIGXCPU, -signal.SIGXFSZ) else KILLED

    @property
    def by(self):
        """The test that failed, where the output tells, or the signal."""
        failed = FAILED.search(self.output)
        if failed:
            return failed[1]
        return f"signal {-self.code}" if self.code is not None and self.code < 0 else ""


class Runner:
    """Runs commands one after the other, in a folder of its own for temporary files."""

    def __init__(self, folder, megabytes):
        self._folder = folder
        self._megabytes = megabytes

    def run(self, command, folder, environment, cpu):
        shutil.rmtree(self._folder, ignore_errors=True)
        self._folder.mkdir(parents=True)
        limits = ["prlimit", f"--cpu={cpu}:{cpu + 1}", "--core=0", f"--fsize={LARGEST_FILE}"]
        limits += [f"--as={self._megabytes << 20}"] if self._megabytes else []
        environment = {**os.environ, "TMPDIR": str(self._folder), "OMP_WAIT_POLICY": "passive", **environment}
        with tempfile.TemporaryFile() as output:
            process = subprocess.Popen(
                [*limits, *command],
                cwd=folder,
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=output,
                start_new_session=True,
            )
            try:
                code = process.wait(cpu * WALL_FACTOR)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                code = None
            output.seek(0)
            return Ending(code, output.read(1 << 20).decode("utf-8", "replace"))


def check_and_record(cases, count, runner, record):
    """Runs every test alone without a mutant. Gives the numbers of the mutants that each reaches."""
    reached = []
    for case in cases:
        record.write_bytes(bytes(count + 1))
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        ending = runner.run(case.command, case.folder, {**case.environment, CHOICE: "0", RECORD: str(record)}, 600)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        if ending.status != SURVIVED:
            raise ProjectError(f"test {case.name} fails without any mutant:\n{ending.output[-3000:]}")
        case.seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        reached.append({number for number, byte in enumerate(record.read_bytes()) if byte})
    return reached


def together(cases):
    """Groups of tests to be run by one process each: the quick ones of a GoogleTest program, others alone."""
    groups = {}
    for place, case in enumerate(cases):
        quick = case.filter is not None and case.seconds < QUICK
        groups.setdefault((case.program, place // MOST_NAMES) if quick else case.name, []).append(case)
    return sorted(groups.values(), key=lambda group: sum(case.seconds for case in group))


def command(group):
    if group[0].filter is None:
        return group[0].command
    return [group[0].command[0], FILTER + ":".join(case.filter for case in group), *STOP_AT_ONCE]


def try_mutant(number, cases, runner):
    """(status, what killed it) after the first failing test."""
    for group in together(cases):
        first = group[0]
        cpu = CPU_LEAST + math.ceil(CPU_FACTOR * sum(case.seconds for case in group))
        ending = runner.run(command(group), first.folder, {**first.environment, CHOICE: str(number)}, cpu)
        if ending.status != SURVIVED:
            return ending.status, "" if ending.status == TIMED_OUT else ending.by or os.path.basename(first.command[0])
    return SURVIVED, ""
