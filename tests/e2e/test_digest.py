"""The digest of all result files: the same at 1, 2 and 8 threads, and blind to nothing."""

import os
import pathlib
import shlex
import stat
import subprocess
import sys
import tempfile
import unittest

import h5py

import result_digest
from bare_result import without_record
from digest_projects import SHORT, Programs, all_projects, short_projects
from result_digest import Digest, compare, digest_of_files, masked, parse
from small_project import SmallProject, run

SCRIPT = pathlib.Path(result_digest.__file__)
# Runs the true program, then changes one value of the result file if the wanted words follow each other in those
# after "--".
FALSE_PROGRAM = """import h5py, pathlib, subprocess, sys
split = sys.argv.index("--")
program, wanted, words = sys.argv[1], sys.argv[2:split], sys.argv[split + 1:]
status = subprocess.run([program, *words]).returncode
if ' '.join(wanted) in ' '.join(words):
    path = pathlib.Path(words[1]).with_suffix(".fzr")
    with h5py.File(path, "r+") as file:
        file["items/1"][0] += 1.0
sys.exit(status)
"""


def true_programs():
    return result_digest.programs_of_environment(os.environ)


def project_named(name):
    return next(project for project in all_projects() if project.name == name)


class SameBytes(unittest.TestCase):
    def test_threads_and_stored_search(self):
        digest = Digest(true_programs(), [1, 2, 8], with_texts=True)
        for project in short_projects():
            digest.add_project(project)
        self.assertEqual(digest.differences, [])
        empty = [name for name, value in digest.lines.items() if value.endswith(" 0")]
        self.assertEqual(empty, [])
        self.assertEqual(len({project.name for project in short_projects()}), len(SHORT))


class ChangedByte(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="digest-test-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def false_programs(self, *wanted):
        """Programs of which `frozenlayer` writes one value wrongly in runs with the wanted words."""
        code, script = self.folder / "false.py", self.folder / "frozenlayer"
        code.write_text(FALSE_PROGRAM, encoding="utf-8")
        true = true_programs()
        words = shlex.join([sys.executable, str(code), true.people, *wanted])
        script.write_text(f'#!/bin/sh\nexec {words} -- "$@"\n', encoding="utf-8")
        script.chmod(script.stat().st_mode | stat.S_IXUSR)
        return Programs(true.console, str(script))

    def digest(self, programs):
        digest = Digest(programs, [1, 2])
        digest.add_project(project_named("flow code 6"))
        return digest

    def test_between_programs(self):
        lists = [self.digest(programs).text() for programs in (true_programs(), self.false_programs("--corrected"))]
        self.assertEqual(compare(*lists, whole=True), ["differs: flow code 6 | frozenlayer run"])
        self.assertNotEqual(parse(lists[0])["all"], parse(lists[1])["all"])

    def test_between_threads(self):
        differences = self.digest(self.false_programs("--threads", "2")).differences
        told = "flow code 6 | {}, 2 threads, {}: differs from the first run: project/Analysis/Run1/part1.fzr"
        modes = ("frozenlayer run", "frozenlayer run, resolved")
        searches = ("fresh search", "stored search")
        self.assertEqual(differences, [told.format(mode, search) for mode in modes for search in searches])

    def test_when_silent(self):
        differences = self.digest(self.false_programs("--log-level", "0")).differences
        self.assertEqual(len(differences), 2)
        for difference in differences:
            self.assertIn("1 threads, silent: differs", difference)


class Record(unittest.TestCase):
    """What a result was made from is left out as if it had never been written."""

    def test_only_the_record_is_left_out(self):
        project = SmallProject(self)
        result, run_file = project.file("box1.fzr"), project.file("box1.run")

        def content():
            words = ("run", project.file("box1.k4f"), "--corrected", "--intermediate-times", 0)
            self.assertEqual(run(*words).returncode, 0)
            return result.read_bytes()

        first = content()
        run_file.write_text(run_file.read_text(encoding="utf-8") + "\n", encoding="utf-8")
        other_record = content()
        project.write_flow(0, 4.0)
        other_values = content()
        self.assertNotEqual(first, other_record)
        self.assertEqual(without_record(first), without_record(other_record))
        self.assertNotEqual(without_record(first), without_record(other_values))
        self.assertEqual(without_record(without_record(first)), without_record(first))
        self.assertLess(len(without_record(first)), len(first))
        with h5py.File(result, "r+") as file:
            file["head"].attrs["more"] = 1
        with self.assertRaisesRegex(ValueError, "/head: attributes that only one of file and writer has: .*more"):
            without_record(result.read_bytes())


class Lists(unittest.TestCase):
    def test_every_part_of_a_file_counts(self):
        files = {"a": b"12", "b": b""}
        others = ({"a": b"13", "b": b""}, {"a": b"12"}, {"a": b"1", "b": b"2"}, {"a": b"12", "c": b""})
        self.assertEqual(len({digest_of_files(f) for f in (files, *others)}), 5)
        self.assertEqual(digest_of_files(files), digest_of_files(dict(reversed(files.items()))))

    def test_only_times_are_masked(self):
        text = "ReadMeshData Time: {} seconds\nOutput time 3 s (1 of 1): {} evaluated in {} s\nMax=1.5\n"
        one, two = text.format("2e-05", "7 nodes", "0.1"), text.format("1.25", "7 nodes", "12")
        self.assertEqual(masked(one), masked(two))
        for other in (one.replace("7", "8"), one.replace("3 s", "4 s"), one.replace("1.5", "1.6")):
            self.assertNotEqual(masked(one), masked(other))

    def test_comparison_names_what_differs(self):
        earlier = "1 1 2 a | m\n2 1 2 b | m\n3 1 2 c | m\n9 - 3 all\n"
        now = "1 1 2 a | m\n2 0 2 b | m\n4 1 2 d | m\n8 - 3 all\n"
        told = ["differs: b | m", "only in the earlier list: c | m", "not in the earlier list: d | m"]
        self.assertEqual(compare(earlier, now, whole=True), told)
        self.assertEqual(compare(earlier, now, whole=False), [told[0], told[2]])
        self.assertEqual(compare(earlier, earlier, whole=True), [])


class Script(unittest.TestCase):
    def start(self, *words, **variables):
        return subprocess.run(
            [sys.executable, str(SCRIPT), "--only", "heating-cooling", "--threads", "1", *words],
            capture_output=True,
            encoding="utf-8",
            env={**os.environ, **variables},
            check=False,
        )

    def test_list_and_comparison(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "list.txt"
            done = self.start("--short", "--out", str(path))
            self.assertEqual((done.returncode, path.read_text(encoding="utf-8")), (0, done.stdout), done.stderr)
            again = self.start("--short", "--compare", str(path))
            self.assertEqual((again.returncode, again.stdout), (0, done.stdout), again.stderr)
            digest = done.stdout[:64]
            path.write_text(done.stdout.replace(digest, digest[::-1], 1), encoding="utf-8")
            other = self.start("--short", "--compare", str(path))
            self.assertEqual(other.returncode, 1)
            self.assertIn("differs: heating-cooling | launcher, classic\n", other.stderr)

    def test_refusals(self):
        missing = self.start(FROZENLAYER="/nowhere")
        self.assertIn("FROZENLAYER: the path of a program is expected", missing.stderr)
        self.assertNotEqual(missing.returncode, 0)
        self.assertIn("name 1 first in --threads", self.start("--texts", "--threads", "2,1").stderr)
        self.assertIn("no project's name contains 'cool of'", self.start("--only", "cool of").stderr)
        self.assertIn("/nowhere cannot be read", self.start("--compare", "/nowhere").stderr)
        for text in ("no list\n", "", "9 - 1 all\nx"):
            with self.subTest(text), tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
                file.write(text)
                file.flush()
                self.assertIn(f"{file.name} is no list of this script", self.start("--compare", file.name).stderr)


if __name__ == "__main__":
    unittest.main()
