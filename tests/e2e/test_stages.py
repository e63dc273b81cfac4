"""End-to-end tests: every number of every written file against an independent computation.

Environment: QNL3DFROZENLAYER names the console program, FROZENLAYER the one for people, QNL_EXAMPLES the
folder of the example projects. QNL_CASE, when set, limits the made projects to those whose name contains
it; QNL_SEEDS and QNL_FIRST_SEED choose the random ones.
"""

import os
import shutil
import struct
import subprocess
import tempfile
import unittest
from dataclasses import replace

import numpy as np

from referee.cases import CASES, COMPLETE, Case, random_case
from referee.compare import compare_file
from referee.evaluation import Run, RunWords
from referee.mesh import length
from referee.probe import Probe, listed_ids
from referee.rays import RaySearch
from referee.result_file import read_result
from referee.sink_file import compare_sink_file
from referee.write_mesh import Block
from referee.write_project import write_project

PROGRAM = os.environ.get("QNL3DFROZENLAYER", "")
PEOPLES_PROGRAM = os.environ.get("FROZENLAYER", "")
EXAMPLES = os.environ.get("QNL_EXAMPLES", "")
WANTED = os.environ.get("QNL_CASE", "")
SEEDS = int(os.environ.get("QNL_SEEDS", "12"))
FIRST_SEED = int(os.environ.get("QNL_FIRST_SEED", "1"))
SUCCESS = 1
BLOCK_OF_PROBE = Block("mixed", bricks=(6, 3, 3), bend=0.25, seed=6)
BY_NAME = {case.name: case for case in CASES}


def run_program(words, threads=2, options=()):
    arguments = [PROGRAM, words.input_path, words.project, words.name, str(words.code), words.run]
    if not words.five_words:
        arguments += ["x", f"--intermediate-times={words.times}"]
    arguments += [f"--threads={threads}", f"--log-level={words.log_level}"]
    if words.corrected:
        arguments.append("--corrected")
    arguments += options
    # Waiting threads that spin would slow a busy machine down.
    environment = {**os.environ, "OMP_WAIT_POLICY": "passive"}
    done = subprocess.run(arguments, capture_output=True, text=True, timeout=600, env=environment)
    return done.returncode, done.stdout + done.stderr


def run_for_people(words):
    """The same run through the program for people."""
    arguments = [PEOPLES_PROGRAM, "run", words.input_path, "--analysis-code", str(words.code)]
    arguments += ["--intermediate-times", str(words.times), "--threads", "2"]
    arguments.append("--corrected" if words.corrected else "--classic")
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
        return self.compare(words)

    def compare(self, words):
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
    def check(self, case, checker):
        with self.subTest(case.name):
            project, stage = write_project(case, tempfile.mkdtemp(dir=self.folder))
            run = self.evaluate(case_words(case, project, stage), 1 if case.single_thread else 2)
            problems = checker.check_lists(case.block, run)
            if run.input.gas_in:
                problems += checker.check_thickness(case.block, run)
            self.assertEqual(problems, [], "\n" + "\n".join(problems[:5]))

    def test_every_case(self):
        checker = SearchChecker()
        for case in CASES:
            if WANTED in case.name:
                self.check(case, checker)

    def test_random_cases(self):
        for seed in range(FIRST_SEED, FIRST_SEED + SEEDS):
            case = random_case(seed)
            if WANTED in case.name:
                self.check(case, SearchChecker())


class SpecialNodes(ProjectTest):
    """Their values are cleared before the smoothing, which then fills them from the nodes around."""

    CLEARED = {"PackingIndex": 11, "Max_VolumeShrinkage": 16, "Flake_ColorIntensity": 20}

    def test_cleared_values_are_smoothed_from_their_neighbours(self):
        case = BY_NAME["flow fibre and flakes"]
        project, stage = write_project(case, self.folder)
        run = self.evaluate(case_words(case, project, stage))
        surface = run.mesh.surface_nodes
        special = run.mesh.labels[surface[run.mesh.node_class[surface] == -1]]
        written = read_result(stage.replace(".k4f", ".fzr"))
        rows = np.isin(written.node_ids, special)
        self.assertGreater(rows.sum(), 10)
        for name, item in self.CLEARED.items():
            self.assertTrue(written.item(item)[rows].all(), f"{name} of a special node is 0")


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


class ForPeople(ProjectTest):
    CASES = ("flow code 6", "flow code 1 corrected", "cool with map and gas", "warp skewed")

    def test_same_numbers(self):
        for name in self.CASES:
            with self.subTest(name):
                project, stage = write_project(BY_NAME[name], tempfile.mkdtemp(dir=self.folder))
                words = case_words(BY_NAME[name], project, stage)
                status, text = run_for_people(words)
                self.assertEqual(status, 0, text)
                self.compare(replace(words, project_text=project.replace("/", "\\")))


class StoredSearch(ProjectTest):
    """When a stored search is taken as it stands, and when it is made again."""

    def begin(self, name, corrected=False):
        case = replace(BY_NAME[name], corrected=corrected)
        project, stage = write_project(case, tempfile.mkdtemp(dir=self.folder))
        words = case_words(case, project, stage)
        run = self.evaluate(words)
        return words, run

    @staticmethod
    def store(path, words):
        with open(path, "wb") as file:
            file.write(struct.pack(f"<{len(words)}i", *words))

    @staticmethod
    def words_in(lists):
        words = [1001, len(lists)]
        for ids in lists:
            words += [len(ids), *ids]
        return words

    def test_foreign_lists_are_taken(self):
        words, run = self.begin("cool mesh 1")
        foreign = self.words_in([ids[::-1] for ids in run.lists[1:]] + [()])
        self.store(run.search_path, foreign)
        self.assertEqual(self.words_in(self.evaluate(words).lists), foreign)

    def test_flow_and_cool_share_one_search(self):
        words, run = self.begin("flow mesh 1")
        smoothed = run.lists
        case = BY_NAME["cool mesh 1"]
        stage = words.input_path[:-4] + ".k4c"
        _, source = write_project(case, tempfile.mkdtemp(dir=self.folder))
        shutil.copy(source, stage)
        words = case_words(case, words.project, stage)
        self.assertEqual(self.evaluate(words).lists, smoothed)
        own = self.evaluate(replace(words, corrected=True))
        self.assertEqual(own.lists, smoothed)
        os.remove(run.search_path)
        self.assertNotEqual(self.evaluate(words).lists, smoothed)

    def test_corrected_keeps_smoothed_rays_apart(self):
        _, run = self.begin("flow mesh 1", corrected=True)
        self.assertTrue(run.search_path.endswith("block_s.sur"))
        self.assertFalse(os.path.exists(run.search_path.replace("_s.sur", ".sur")))

    def test_damaged_lists_are_made_again(self):
        words, run = self.begin("cool mesh 3")
        good = self.words_in(run.lists)
        top = run.mesh.face_count + run.mesh.cell_count
        damages = {
            "empty": [],
            "version": [1002] + good[1:],
            "count of records": [1001, good[1] - 1] + good[2:],
            "short": good[:-1],
            "negative count": good[:2] + [-1] + good[3:],
            "huge count": good[:2] + [2**31 - 1] + good[3:],
            "id too large": good[:3] + [top + 1] + good[4:],
            "id 0": good[:3] + [0] + good[4:],
        }
        for name, damaged in damages.items():
            with self.subTest(name):
                self.store(run.search_path, damaged)
                self.assertEqual(self.words_in(self.evaluate(words).lists), good)

    def test_corrected_makes_an_old_search_again(self):
        words, run = self.begin("cool mesh 3", corrected=True)
        good = self.words_in(run.lists)
        foreign = self.words_in(run.lists[1:] + run.lists[:1])
        mesh_time = os.stat(run.mesh_path).st_mtime_ns
        for shift, wanted in ((0, foreign), (10**9, foreign), (-(10**9), good)):
            with self.subTest(shift=shift):
                self.store(run.search_path, foreign)
                os.utime(run.search_path, ns=(mesh_time + shift, mesh_time + shift))
                self.assertEqual(self.words_in(self.evaluate(words).lists), wanted)


class FibreProbe(ProjectTest):
    def probe(self, name, stage, list_name, csv_name, log):
        case = Case(name, stage=stage, block=BLOCK_OF_PROBE, log=log, fibre=True, material="flake")
        project, path = write_project(case, self.folder)
        folder = os.path.dirname(path)
        words = case_words(case, project, path)
        if stage != ".k4o":
            shutil.copy(path[: path.rindex(".")] + ".k4o", path)
        probe = Probe(words)
        labels = probe.mesh.labels
        ids = [int(labels[n]) for n in probe.mesh.surface_nodes[::5]] + [0, 10**6, -3, int(labels[-1])]
        with open(os.path.join(folder, list_name), "w") as file:
            file.write("7\n<List>\n" + "\n".join(map(str, ids[:9])) + "\nno number\n</List>\n12\n")
            file.write("text <List> \n" + "\n".join(f"  {i} node" for i in ids[9:]) + "\n</List>\n")
        status, text = run_program(words, 2, ["--fibre-probe"])
        self.assertEqual(status, SUCCESS, text)
        with open(os.path.join(folder, csv_name)) as file:
            written = file.read()
        wanted = probe.text(path, listed_ids(os.path.join(folder, list_name)))
        self.assertGreater(wanted.count("surface"), 5)
        self.assertEqual(written.split("\n"), wanted.split("\n"))
        self.assertFalse(os.path.exists(os.path.join(project, "Mesh", "block.sur")))

    def test_fibre_file(self):
        self.probe("probe", ".k4o", "part1_IdForFiber.txt", "part1.csv", None)

    def test_along_smoothed_normals(self):
        self.probe("probe", ".k4f", "part1.fzr_IdForFiber.txt", "part1.fzr.csv", COMPLETE)


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
                shutil.copytree(os.path.join(EXAMPLES, example), project)
                path = os.path.join(project, "Analysis", "Run1", stage)
                if stage.endswith(".k4p"):  # the examples' pack results would be the same as their flow results
                    shutil.copy(path.replace(".k4p", ".k4f"), path)
                name = stage.split("1.")[0]
                self.evaluate(RunWords(path, project, name, code, "1", times, corrected))


if __name__ == "__main__":
    unittest.main()
