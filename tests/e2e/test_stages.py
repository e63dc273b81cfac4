"""End-to-end tests: every number of every written file against an independent computation.

Environment: QNL3DFROZENLAYER names the console program, QNL_EXAMPLES the folder of the example projects.
QNL_CASE, when set, limits the made projects to those whose name contains it.
"""

import os
import shutil
import subprocess
import tempfile
import unittest

import numpy as np

from referee.cases import CASES
from referee.compare import compare_file
from referee.evaluation import Run, RunWords
from referee.mesh import length
from referee.rays import RaySearch
from referee.result_file import read_result
from referee.sink_file import compare_sink_file
from referee.write_project import write_project

PROGRAM = os.environ.get("QNL3DFROZENLAYER", "")
EXAMPLES = os.environ.get("QNL_EXAMPLES", "")
WANTED = os.environ.get("QNL_CASE", "")
SUCCESS = 1
BY_NAME = {case.name: case for case in CASES}


def run_program(words, threads=2):
    arguments = [PROGRAM, words.input_path, words.project, words.name, str(words.code), words.run]
    if not words.five_words:
        arguments += ["x", f"--intermediate-times={words.times}"]
    arguments += [f"--threads={threads}", f"--log-level={words.log_level}"]
    if words.corrected:
        arguments.append("--corrected")
    done = subprocess.run(arguments, capture_output=True, text=True, timeout=600)
    return done.returncode, done.stdout + done.stderr


def case_words(case, project, stage):
    return RunWords(
        stage, project, "part", case.code, case.run, case.times, case.corrected, case.log_level, case.five_words
    )


class SearchChecker:
    """Brute-force answers for the meshes of the made projects, each ray computed once."""

    def __init__(self):
        self.searches, self.answers = {}, {}

    def answer(self, block, mesh, node, direction):
        key = (block, int(node), tuple(direction))
        if key not in self.answers:
            if block not in self.searches:
                self.searches[block] = RaySearch(mesh)
            self.answers[key] = self.searches[block].search(mesh.points[node], direction)
        return self.answers[key]

    def _inward(self, normals, node):
        inward = -normals[:, node]
        size = length(inward)
        return inward / size if size >= 1e-20 else None

    def check_lists(self, block, run):
        problems = []
        for position, node in enumerate(run.mesh.surface_nodes):
            direction = self._inward(run.search_normals, node)
            wanted = [] if direction is None else self.answer(block, run.mesh, node, direction)[0]
            if wanted != list(run.lists[position]):
                problems.append(
                    f"node {run.mesh.labels[node]} along {direction}: elements {wanted} expected,"
                    f" {list(run.lists[position])} found"
                )
        return problems

    def check_thickness(self, block, run):
        """The wall thickness file: the inner length of each ray, and the mean over the ring of neighbours."""
        mesh, normals = run.mesh, np.ascontiguousarray(run.mesh.normals().T)
        walls = np.zeros(mesh.node_count + 1)
        for node in mesh.surface_nodes:
            direction = self._inward(normals, node)
            walls[node] = 0.0 if direction is None else self.answer(block, mesh, node, direction)[1]
        ring_sum, ring_count = np.zeros(mesh.node_count + 1), np.zeros(mesh.node_count + 1)
        for a, b in np.concatenate((mesh.edges, mesh.edges[:, ::-1])):
            if walls[b] > 0.0:
                ring_sum[a] += walls[b]
                ring_count[a] += 1.0
        means = np.where(ring_count > 0.0, ring_sum / np.maximum(ring_count, 1.0), 0.0)
        file = read_result(os.path.splitext(run.mesh_path)[0] + ".thk")
        problems = []
        for number, wanted in ((1, walls), (2, means)):
            found = file.item(number)[mesh.labels[1:]].astype(np.float64)
            off = np.abs(found - wanted[1:]) > 1e-6 * (1.0 + wanted[1:])
            if off.any():
                worst = int(np.argmax(np.abs(found - wanted[1:])))
                problems.append(
                    f"thickness item {number}: {int(off.sum())} differ, worst at node {mesh.labels[worst + 1]}:"
                    f" expected {wanted[worst + 1]}, written {found[worst]}"
                )
        return problems


class ProjectTest(unittest.TestCase):
    def setUp(self):
        self.assertTrue(os.path.isfile(PROGRAM), "QNL3DFROZENLAYER names no file")
        self.folder = tempfile.mkdtemp(prefix="referee-")
        self.addCleanup(shutil.rmtree, self.folder)

    def evaluate(self, words, threads=2):
        """Runs the program and compares all result files; gives the referee's run."""
        status, text = run_program(words, threads)
        self.assertEqual(status, SUCCESS, text)
        run = Run(words)
        expected = run.evaluate()
        problems = []
        for time in expected:
            problems += [f"{os.path.basename(time.path)}: {p}" for p in compare_file(run, time)]
        if words.log_level > 0 and run.selection.has_times:
            path = os.path.join(words.project, "Analysis", "Run" + words.run, words.name + words.run + "_Sink.k4w")
            problems += compare_sink_file(run, expected[-1].sink_vectors, path)
        self.assertEqual(problems, [], "\n" + "\n".join(problems))
        return run


class MadeProjects(ProjectTest):
    def test_every_case(self):
        checker = SearchChecker()
        for number, case in enumerate(CASES):
            if WANTED not in case.name:
                continue
            with self.subTest(case.name):
                project, stage = write_project(case, os.path.join(self.folder, str(number)))
                run = self.evaluate(case_words(case, project, stage), 1 if case.single_thread else 2)
                problems = checker.check_lists(case.block, run)
                if run.input.gas_in:
                    problems += checker.check_thickness(case.block, run)
                self.assertEqual(problems, [], "\n" + "\n".join(problems[:5]))


def all_bytes(folder):
    found = {}
    for root, _, names in os.walk(folder):
        for name in names:
            if not name.endswith(".lgz"):
                with open(os.path.join(root, name), "rb") as file:
                    found[os.path.relpath(os.path.join(root, name), folder)] = file.read()
    return found


class SameBytes(ProjectTest):
    CASES = (
        "flow code 6",
        "flow code 1 corrected",
        "flow fibre and flakes",
        "flow sink file",
        "cool with map and gas",
        "heating-cooling",
        "warp low shrinkage corrected",
        "cool in a flow folder",
    )

    def test_threads_and_reused_search(self):
        """The same project gives the same bytes for any thread count, with a fresh or a reused search."""
        for name in self.CASES:
            with self.subTest(name):
                project, stage = write_project(BY_NAME[name], os.path.join(self.folder, name))
                words = case_words(BY_NAME[name], project, stage)
                untouched = all_bytes(project)
                written = None
                for threads in (1, 2, 8):
                    for reuse in (False, True):
                        if not reuse:
                            self._remove_written(project, untouched)
                        self.assertEqual(run_program(words, threads)[0], SUCCESS)
                        now = all_bytes(project)
                        self.assertGreater(len(now), len(untouched))
                        written = written or now
                        changed = [k for k in written.keys() | now.keys() if written.get(k) != now.get(k)]
                        self.assertEqual(changed, [], f"{threads} threads, search reused: {reuse}")

    @staticmethod
    def _remove_written(project, untouched):
        for path in all_bytes(project).keys() - untouched.keys():
            os.remove(os.path.join(project, path))


@unittest.skipUnless(EXAMPLES, "QNL_EXAMPLES names no folder")
class Examples(ProjectTest):
    """(example, result name, code, intermediate times, corrected)"""

    RUNS = (
        ("stepped-plate", "plate1.k4f", 4, 2, False),
        ("stepped-plate", "plate1.k4f", 4, 1, True),
        ("stepped-plate", "plate1.k4p", 1, 0, False),
        ("stepped-plate", "plate1.k4c", 2, 0, False),
        ("ribbed-cover", "cover1.k4f", 4, 1, False),
        ("ribbed-cover", "cover1.k4c", 2, 0, True),
        ("ribbed-cover", "cover1.k4w", 2, 0, True),
    )

    def test_examples(self):
        for number, (example, stage, code, times, corrected) in enumerate(self.RUNS):
            with self.subTest(example=example, stage=stage, corrected=corrected):
                project = os.path.join(self.folder, f"{number}")
                shutil.copytree(os.path.join(EXAMPLES, example, "project"), project)
                path = os.path.join(project, "Analysis", "Run1", stage)
                name = stage.split("1.")[0]
                self.evaluate(RunWords(path, project, name, code, "1", times, corrected))


if __name__ == "__main__":
    unittest.main()
