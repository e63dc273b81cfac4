#!/usr/bin/env python3
"""The mutation tool on a small project whose mutants, and their fates, are known."""
import importlib.util
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
TOOL = HERE.parent.parent / "tools" / "mutation"

KILLED, SURVIVED, TIMED_OUT = "killed", "survived", "timed out"
NOT_REACHED, NOT_TRIED, NOT_COMPILED, EQUIVALENT = "not reached", "not tried", "not compiled", "equivalent"

FATES = {
    "src/range/Range.h": {
        "3 -> 4": NOT_TRIED,  # an array size in the header
        "2 -> 3": NOT_TRIED,  # an array size in the test, which only the compiler finds out
        'name != "" -> true': KILLED,
        'name != "" -> false': KILLED,
    },
    "src/range/Range.cpp": {
        "0.5 -> 0.5 * 1.1": KILLED,
        "count - 1 -> count + 1": NOT_TRIED,
        "1 -> 2": NOT_TRIED,
        "value < low -> value <= low": EQUIVALENT,
        "value < low -> value != low": KILLED,
        "value < low -> false": KILLED,
        "value > high -> value >= high": SURVIVED,
        "value > high -> value != high": KILLED,
        "value > high -> false": KILLED,
        "low + kShare * (high - low) -> low - kShare * (high - low)": KILLED,
        "kShare * (high - low) -> kShare / (high - low)": KILLED,
        "high - low -> high + low": KILLED,
        "lowest = value -> nothing": KILLED,
        "reallyTurn -> true": SURVIVED,
        "reallyTurn -> false": KILLED,
        "value = -value -> nothing": KILLED,
        "-value -> value": KILLED,
        "value >= low && value == high -> value >= low": KILLED,
        "value >= low && value == high -> value == high": SURVIVED,
        "value >= low -> value > low": KILLED,
        "value >= low -> value == low": SURVIVED,
        "value == high -> false": KILLED,
        "offset + value -> offset - value": NOT_REACHED,
    },
    "src/count/Count.cpp": {
        "0 -> 1": KILLED,  # both of them
        "number > 0 -> number >= 0": TIMED_OUT,
        "number > 0 -> false": KILLED,
        "number /= 10 -> nothing": TIMED_OUT,
        "number /= 10 -> number *= 10": KILLED,
        "10 -> 11": SURVIVED,
        "++digits -> nothing": KILLED,
        "++digits -> --digits": KILLED,
    },
}
EQUIVALENT_LINES = """# file | line | mutation | reason
src/range/Range.cpp | if (value < low) { | value < low -> value <= low | either gives low
src/range/Range.cpp | if (value < 0) { | value < 0 -> value <= 0 | the line was rewritten since
"""


def run(project, *arguments):
    record = project.parent / "mutants.json"
    command = [
        sys.executable,
        TOOL / "mutate.py",
        "--source",
        project,
        "--scratch",
        project.parent / "scratch",
        "--json",
        record,
        *arguments,
    ]
    done = subprocess.run(command, capture_output=True, text=True)
    mutants = json.loads(record.read_text(encoding="utf-8"))["mutants"] if done.returncode == 0 else []
    return done, mutants


def contents(folder):
    return {path: path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Mutation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.project = pathlib.Path(cls.temporary.name) / "sample"
        shutil.copytree(HERE / "sample", cls.project)
        cls.equivalent = cls.project / "tests" / "mutation" / "equivalent.txt"
        cls.equivalent.parent.mkdir()
        cls.equivalent.write_text(EQUIVALENT_LINES, encoding="utf-8")
        before = contents(cls.project)
        cls.done, cls.mutants = run(cls.project, "src/range", "src/count")
        cls.untouched = contents(cls.project) == before

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_every_mutant_meets_its_known_fate(self):
        self.assertEqual(self.done.returncode, 0, self.done.stderr)
        fates = {}
        for mutant in self.mutants:
            self.assertEqual(
                fates.setdefault(mutant["file"], {}).setdefault(mutant["mutation"], mutant["status"]), mutant["status"]
            )
        self.assertEqual(fates, FATES)

    def test_the_table_adds_up(self):
        rows = [line.split() for line in self.done.stdout.splitlines() if line.startswith(("src/range ", "all "))]
        self.assertEqual(rows[0], "src/range 22 17 0 1 4 1 4 0".split())
        self.assertEqual(rows[1], "all 31 23 2 1 5 1 4 0".split())

    def test_survivors_are_listed_as_the_list_of_equivalent_mutants_wants_them(self):
        self.assertIn(
            "src/count/Count.cpp:6: survived\n    src/count/Count.cpp | number /= 10; | 10 -> 11\n", self.done.stdout
        )

    def test_the_project_is_left_alone(self):
        self.assertTrue(self.untouched)

    def test_an_entry_without_its_mutant_is_told(self):
        self.assertIn("there is no such mutant: src/range/Range.cpp | if (value < 0) {", self.done.stderr)

    def test_what_the_compiler_must_know_is_tried_alone_on_demand(self):
        done, mutants = run(self.project, "src/range", "--rebuild")
        self.assertEqual(done.returncode, 0, done.stderr)
        fates = {
            mutant["mutation"]: mutant["status"]
            for mutant in mutants
            if FATES[mutant["file"]][mutant["mutation"]] == NOT_TRIED
        }
        self.assertEqual(
            fates,
            {"3 -> 4": KILLED, "2 -> 3": SURVIVED, "count - 1 -> count + 1": NOT_COMPILED, "1 -> 2": NOT_COMPILED},
        )

    def test_tests_must_pass_without_a_mutant(self):
        broken = self.project.with_name("broken")
        shutil.copytree(self.project, broken)
        test = broken / "tests" / "CountTest.cpp"
        test.write_text(test.read_text(encoding="utf-8").replace("== 3", "== 4"), encoding="utf-8")
        done, _ = run(broken, "src/count")
        self.assertEqual(done.returncode, 2)
        self.assertIn("test count fails without any mutant", done.stderr)

    def test_wrong_arguments_are_refused(self):
        for arguments, expected in (
            (["src/nowhere"], "src/nowhere: no folder or file of"),
            (["tests"], "tests/CountTest.cpp: no test executable"),
            (["src/count", "--tests", "src/count=test_sum"], "test_sum: no executable"),
            (["src/count", "--tests", "test_count"], "--tests test_count: expected"),
        ):
            done, _ = run(self.project, *arguments)
            self.assertEqual(done.returncode, 2)
            self.assertIn(expected, done.stderr)


class Literals(unittest.TestCase):
    def test_types_stay(self):
        import operators

        cases = (
            ("0", "1"),
            ("9U", "10U"),
            ("0x0F", "16"),
            ("1'000", "1001"),
            ("2147483647", "(2147483647 - 1)"),
            ("4294967295U", "(4294967295U - 1)"),
            ("010", "9"),
            ("1s", None),
        )
        for text, expected in cases:
            self.assertEqual(operators.other_integer(text), expected)
        for text, expected in (
            ("0.0", "1.0"),
            ("0.F", "1.0F"),
            ("1e-3", "(1e-3 * 1.1)"),
            ("2.5f", "(2.5f * 1.1f)"),
            ("1.0s", None),
        ):
            self.assertEqual(operators.other_floating(text), expected)


if __name__ == "__main__":
    if importlib.util.find_spec("clang") is None:
        print("the mutation tool is not tested: tools/install_packages.sh mutation")
        sys.exit(0)
    sys.path.insert(0, str(TOOL))
    unittest.main()
