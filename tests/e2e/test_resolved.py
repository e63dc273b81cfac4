"""The resolved mode through the programs: curved parts against series solutions, simple fields that every stage must
give back, and input that leaves something open.

QNL3DFROZENLAYER names the console program, FROZENLAYER the one for people.
"""

import math
import os
import pathlib
import subprocess
import tempfile
import unittest
from dataclasses import replace

import h5py
import numpy as np

from curved_meshes import ball, cylinder, modulus, write_tetras
from referee.cases import Case
from referee.mesh import read_mesh
from referee.rays import RaySearch
from referee.write_mesh import Block
from referee.write_project import write_project
from referee.write_results import write_binary

PROGRAM = os.environ.get("QNL3DFROZENLAYER", "")
FROZENLAYER = os.environ.get("FROZENLAYER", "")
MELT, MOULD, FREEZE = 230.0, 40.0, 130.0  # degC
RANGE = MELT - MOULD


def evaluate(project, stage, name, times=0, mode="--resolved", code=2):
    """Runs the console program on a stage file."""
    done = subprocess.run(
        [PROGRAM, str(stage), str(project), name, str(code), "1", "x", f"--intermediate-times={times}", mode],
        capture_output=True,
        text=True,
        timeout=300,
    )
    assert done.returncode == 1, done.stdout + done.stderr


def read_items(path):
    """Node labels, and values by item number."""
    with h5py.File(path) as file:
        return file["node_ids"][()], {int(k): v[()].astype(np.float64) for k, v in file["items"].items()}


# ---------------------------------------------------------------------------------------------------------------------
# Cylinder and sphere of an even melt that are cooled from outside (H. S. Carslaw and J. C. Jaeger, Conduction of Heat
# in Solids, 2nd ed. 1959, sections 7.6 and 9.3); `r` by the radius, Fourier numbers by its square. 0 is the mould.


def bessel(order, x):
    """J_0 or J_1 by its integral; the trapezoidal rule converges exponentially."""
    t = np.linspace(0.0, math.pi, 401)[1:-1]
    inner = np.cos(order * t - np.multiply.outer(np.asarray(x, float), np.sin(t))).sum(axis=-1)
    return (inner + 0.5 * (1.0 + math.cos(order * math.pi))) / 400.0


def zeros_of_j0(count):
    zeros = (np.arange(1, count + 1) - 0.25) * math.pi
    for _ in range(20):
        zeros += bessel(0, zeros) / bessel(1, zeros)
    return zeros


ZEROS = zeros_of_j0(30)


def cylinder_excess(r, fo):
    weights = 2.0 / (ZEROS * bessel(1, ZEROS)) * np.exp(-(ZEROS**2) * fo)
    return (weights * bessel(0, np.multiply.outer(r, ZEROS))).sum(axis=-1)


def sphere_excess(r, fo):
    n = np.arange(1, 40)
    weights = 2.0 * (-1.0) ** (n + 1) * np.exp(-((n * math.pi) ** 2) * fo)
    return (weights * np.sinc(np.multiply.outer(r, n))).sum(axis=-1)


def frozen_depth(excess, fo):
    """Depth below the surface, by the radius, at which the freeze temperature is reached."""
    low, high = 0.0, 1.0
    for _ in range(60):
        middle = (low + high) / 2.0
        below = excess(np.array([1.0 - middle]), fo)[0] < (FREEZE - MOULD) / RANGE
        low, high = (middle, high) if below else (low, middle)
    return low


FOURIER = (0.03, 0.05, 0.08)  # later the frozen length is beyond the depth window
ALONG = (4, 6, 8)
CURVED_BOUNDS = {4: 2.0, 6: 1.0, 8: 0.6}  # points of the frozen ratio, by cells along the radius
LEAST_ORDER = 2.0


class CylinderOf3mm:
    radius, excess = 3.0, staticmethod(cylinder_excess)

    @staticmethod
    def mesh(along):
        return cylinder(3.0, along, 10)

    @staticmethod
    def distance(points):
        return np.hypot(points[:, 0], points[:, 1])

    @staticmethod
    def is_seen(points):
        """Half way between the ends."""
        low, high = points[:, 2].min(), points[:, 2].max()
        return np.abs(points[:, 2] - (low + high) / 2.0) < 0.15 * (high - low)


class SphereOf4mm:
    radius, excess = 4.0, staticmethod(sphere_excess)

    @staticmethod
    def mesh(along):
        return ball(4.0, along)

    @staticmethod
    def distance(points):
        return np.linalg.norm(points, axis=1)

    @staticmethod
    def is_seen(points):
        return np.full(len(points), True)


def write_body(folder, body, along):
    """A project whose output times are the Fourier numbers; gives the folder of the run, points and tetras."""
    run = folder / "Analysis" / "Run1"
    for path in (run, folder / "Mesh", folder / "Material"):
        path.mkdir(parents=True)
    (run / "body1.run").write_text("[MESH]\nMeshCount = 1\nM = body.hdf\n[MATERIAL]\nMaterialCount = 1\nM = pp.toml\n")
    (folder / "Material" / "pp.toml").write_text(
        f'kind = "thermoplastic"\nfreeze_temperature = {FREEZE}\ndensity = 0.95\n'
    )
    points, cells = body.mesh(along)
    write_tetras(folder / "Mesh" / "body.hdf", points, cells)
    r = body.distance(points) / body.radius
    for index, fo in enumerate(FOURIER):
        values = MOULD + RANGE * np.where(r > 1.0 - 1e-9, 0.0, body.excess(r, fo))
        write_binary(run / stage_name(index), {6: values}, len(points))
    return run, points, cells


def stage_name(index, extension="k4f"):
    return f"body1.{extension}" if index == 0 else f"body1_{index:03d}.{extension}"


def worst_frozen_ratio(body, along, mode="--resolved"):
    """Largest error, in points, over the output times and the seen nodes of the curved surface."""
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        run, points, cells = write_body(folder, body, along)
        evaluate(folder, run / "body1.k4f", "body", len(FOURIER) - 1, mode)
        window = 3.0 * modulus(points, cells)
        seen = body.is_seen(points) & (body.distance(points) > body.radius - 1e-9)
        worst = 0.0
        for index, fo in enumerate(FOURIER):
            nodes, items = read_items(run / stage_name(index, "fzr"))
            frozen = 2.0 * body.radius * frozen_depth(body.excess, fo)
            assert frozen < window < 2.0 * body.radius
            errors = np.abs(items[1] - 100.0 * frozen / window)[seen[nodes - 1]]
            assert len(errors) > 20
            worst = max(worst, float(errors.max()))
        return worst


class CurvedParts(unittest.TestCase):
    def check(self, body):
        worst = {along: worst_frozen_ratio(body, along) for along in ALONG}
        print(f"{body.__name__}: " + ", ".join(f"{n} cells {e:.2f} points" for n, e in worst.items()))
        for along, bound in CURVED_BOUNDS.items():
            self.assertLess(worst[along], bound, f"{along} cells")
        order = -np.polyfit(np.log(ALONG), np.log(list(worst.values())), 1)[0]
        self.assertGreater(order, LEAST_ORDER)

    def test_cylinder(self):
        self.check(CylinderOf3mm)

    def test_sphere(self):
        self.check(SphereOf4mm)

    def test_corrected_mode_is_outside_the_bounds(self):
        for body in (CylinderOf3mm, SphereOf4mm):
            self.assertGreater(worst_frozen_ratio(body, 4, "--corrected"), CURVED_BOUNDS[4])


# ---------------------------------------------------------------------------------------------------------------------
# Fields that the mode must give back whatever the cells, a runner and its gate included. The depth window holds every
# ray whole, so that the items follow from the temperatures of its two ends.

KINDS = ("tetra", "hexa", "wedge", "pyramid", "mixed")
STAGES = {
    "flow": Case("flow", times=1),
    "pack": Case("pack", ".k4p", times=1),
    "cool": Case("cool", ".k4c", "cool"),
    "heating-cooling": Case("heating-cooling", ".k4hc", "cool"),
    "gas": Case("gas", gas_item=True, times=1, cooling_item=(0, 1), code=6),
    "gas in cooling": Case("gas in cooling", ".k4c", "cool", gas_item=True),
    "fibre": Case("fibre", material="flake", fibre=True, times=1),
    "warp": Case("warp", ".k4w", "warp"),
}
TEMPERATURE_ITEM = {"flow": 6, "cool": 1}
VELOCITY_ITEMS = (11, 12, 13)
RESULT_EXTENSION = {".k4f": ".fzr", ".k4p": ".pzr", ".k4c": ".czr", ".k4hc": ".hczr", ".k4w": ".wzr"}
ITEMS_OF_FLOW = {1, 2, 3, 4, 5, 11, 12, 13, 14, 15, 16, 17, 18, 19}
ITEMS_OF = {
    "flow": ITEMS_OF_FLOW,
    "pack": ITEMS_OF_FLOW,
    "cool": {1, 2, 3, 4, 7, 8},
    "heating-cooling": {1, 2, 3, 4, 7, 8},
    "gas": ITEMS_OF_FLOW | {6, 9, 10},
    "gas in cooling": {1, 2, 3, 4, 7, 8},
    "fibre": ITEMS_OF_FLOW | {20},
    "warp": {1},
}
SINGLE = 2e-4  # nodal values and items are in single precision
END = 1e-4  # of the mesh size: a ray's end is known so well


def block_of(kind):
    bricks = (6, 3, 3) if kind == "mixed" else (4, 3, 3)
    return Block(kind, bricks=bricks, bend=0.0 if kind == "mixed" else 0.25, tolerance=10.0)


def linear(points):
    return 130.0 + 6.0 * (points[:, 0] - 3.5) - 9.0 * (points[:, 1] - 2.5) + 30.0 * (points[:, 2] - 0.9)


def uniform(points):
    return np.full(len(points), 137.5)


class EndsOfRays:
    """Labels and temperatures at the two ends of the inward ray of every written part node."""

    def __init__(self, mesh, field):
        search, normals = RaySearch(mesh), mesh.normals()
        self.labels, ends, walls, self.through_runner = [], [], [], 0
        for node in mesh.surface_nodes[mesh.node_class[mesh.surface_nodes] == 1]:
            inward = -normals[node] / np.linalg.norm(normals[node])
            passed, wall = search.search(mesh.points[node], inward)
            cells = [number - mesh.face_count for number in passed if number > mesh.face_count]
            self.through_runner += any(mesh.regions[cells] != 0)
            if passed:
                self.labels.append(mesh.labels[node])
                ends.append((mesh.points[node], mesh.points[node] + wall * inward))
                walls.append(wall)
        self.here, self.far = (field(np.array([pair[k] for pair in ends])) for k in range(2))
        self.rise = np.abs(self.far - self.here)
        self.error = SINGLE + END * mesh.size * self.rise / np.array(walls)

    def items(self):
        """Frozen ratio, highest, centre, average and bulk temperature of a field that is linear along the rays: value
        and largest error by node."""
        low, high = np.minimum(self.here, self.far), np.maximum(self.here, self.far)
        steep = np.maximum(self.rise, 1e-9)
        frozen = np.clip((FREEZE - low) / steep, 0.0, 1.0)
        middle = (low + high) / 2.0
        items = {number: (middle, self.error) for number in (3, 4, 5)}
        return {
            1: (100.0 * frozen, SINGLE + 100.0 * self.error * (self.rise > 0.0) / steep),
            2: (high, self.error),
        } | items


def gate_labels(mesh):
    """Labels of the nodes that the part shares with the runner."""
    of_region = [set(mesh.cells[mesh.regions == region].ravel()) for region in (0, 1)]
    return set(mesh.labels[sorted((of_region[0] & of_region[1]) - {0})])


def put(path, item, values_by_label):
    with h5py.File(path, "r+") as file:
        data = file[f"items/{item}"]
        data[...] = values_by_label[: len(data)]


class SimpleFields(unittest.TestCase):
    def written(self, folder, case, kind, field):
        """Runs a made project with the field as temperature at its base time; gives mesh and items."""
        case = replace(case, block=block_of(kind), seed=3)
        project, stage = write_project(case, folder)
        mesh = read_mesh(os.path.join(project, "Mesh", "block.hdf"))
        if case.reader in TEMPERATURE_ITEM:
            by_label = np.zeros(int(mesh.labels.max()))
            by_label[mesh.labels[1:] - 1] = field(mesh.points[1:])
            put(stage, TEMPERATURE_ITEM[case.reader], by_label)
            if case.reader == "flow":
                for item in VELOCITY_ITEMS:
                    put(stage, item, np.full(len(by_label), 2.0))
        evaluate(project, stage, "part", case.times, code=case.code)
        labels, items = read_items(os.path.splitext(stage)[0] + RESULT_EXTENSION[case.stage])
        return mesh, labels, items

    def check_field(self, stage, kind, field):
        with tempfile.TemporaryDirectory() as folder:
            mesh, labels, items = self.written(folder, STAGES[stage], kind, field)
            rays = EndsOfRays(mesh, field)
            self.assertEqual(sorted(rays.labels), sorted(labels))
            order = np.argsort(labels)
            rows = order[np.searchsorted(labels, rays.labels, sorter=order)]
            compared = 0
            for item, (expected, bound) in rays.items().items():
                if item in items:
                    error = np.abs(items[item][rows] - expected)
                    worst = int(np.argmax(error / bound))
                    what = f"item {item}, node {rays.labels[worst]}: {error[worst]} of {bound[worst]}"
                    self.assertTrue((error <= bound).all(), what)
                    compared += 1
            self.assertGreaterEqual(compared, 4)
            self.assertTrue(gate_labels(mesh) & set(labels), "no node of the gate was evaluated")
            self.assertGreater(rays.through_runner, 0)

    def test_uniform_temperature_stays_uniform(self):
        for stage, kind in (("flow", k) for k in KINDS):
            with self.subTest(stage=stage, kind=kind):
                self.check_field(stage, kind, uniform)

    def test_linear_field_is_exact_up_to_the_gate(self):
        for stage in ("flow", "pack", "cool", "heating-cooling"):
            for kind in KINDS if stage == "flow" else ("mixed",):
                with self.subTest(stage=stage, kind=kind):
                    self.check_field(stage, kind, linear)

    def test_every_stage_runs_through(self):
        for stage, case in STAGES.items():
            for kind in KINDS:
                with self.subTest(stage=stage, kind=kind), tempfile.TemporaryDirectory() as folder:
                    mesh, labels, items = self.written(folder, case, kind, linear)
                    part = mesh.surface_nodes[mesh.node_class[mesh.surface_nodes] == 1]
                    self.assertGreater(len(labels), 0.9 * len(part))
                    self.assertTrue(ITEMS_OF[stage] <= set(items), sorted(items))
                    for item, values in items.items():
                        self.assertTrue(np.isfinite(values).all(), f"item {item}")


# ---------------------------------------------------------------------------------------------------------------------
# Input that leaves something open.


class PoorInput(unittest.TestCase):
    def run_box(self, block, field, mode="--resolved", status=0):
        """Runs a flow project of one output time with this field through the program for people."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        project, stage = write_project(Case("poor", block=block), folder.name)
        mesh = read_mesh(os.path.join(project, "Mesh", "block.hdf"))
        by_label = np.zeros(int(mesh.labels.max()))
        by_label[mesh.labels[1:] - 1] = field(mesh.points[1:])
        put(stage, TEMPERATURE_ITEM["flow"], by_label)
        for item in VELOCITY_ITEMS:
            put(stage, item, np.full(len(by_label), 2.0))
        done = subprocess.run([FROZENLAYER, "run", stage, mode], capture_output=True, text=True, timeout=300)
        self.assertEqual(done.returncode, status, done.stderr)
        labels, items = read_items(os.path.splitext(stage)[0] + ".fzr")
        return mesh, labels, items, done.stderr

    def test_one_cell_through_the_wall_is_linear_and_said_so(self):
        block = Block("hexa", bricks=(8, 8, 1), size=(16.0, 16.0, 2.0), runner=False, tolerance=10.0)
        mesh, labels, items, text = self.run_box(block, lambda p: 60.0 + 70.0 * p[:, 2] ** 2)
        inner = np.isin(labels, mesh.labels[1:][(np.abs(mesh.points[1:, :2] - 8.0) < 5.0).all(axis=1)])
        for item, expected in ((2, 340.0), (3, 200.0), (4, 200.0), (1, 25.0)):
            self.assertLess(np.abs(items[item][inner] - expected).max(), 1e-2)
        self.assertIn(f" at {mesh.node_count} nodes of {mesh.node_count}, as where one cell is the whole wall", text)

    def test_nothing_is_said_where_curvatures_are_known(self):
        block = Block("hexa", bricks=(4, 4, 3), runner=False)
        for mode in ("--resolved", "--corrected"):
            self.assertNotIn("The nodes around", self.run_box(block, linear, mode)[3])

    def test_mesh_of_one_cell(self):
        for kind in ("hexa", "wedge", "tetra", "pyramid"):
            with self.subTest(kind=kind):
                mesh, labels, items, _ = self.run_box(
                    Block(kind, bricks=(1, 1, 1), runner=False, tolerance=10.0), linear
                )
                expected = EndsOfRays(mesh, linear)
                rows = [list(labels).index(label) for label in expected.labels]
                for item, (values, bound) in expected.items().items():
                    self.assertTrue((np.abs(items[item][rows] - values) <= bound).all(), f"item {item}")

    def test_a_jump_does_not_overshoot(self):
        for kind in KINDS:
            with self.subTest(kind=kind):
                block = replace(block_of(kind), tolerance=10.0)
                _, _, items, _ = self.run_box(block, lambda p: np.where(p[:, 0] < 3.0, 40.0, 230.0))
                slack = 0.01 * RANGE
                for item in (2, 3, 4):
                    self.assertGreater(items[item].min(), 40.0 - slack)
                    self.assertLess(items[item].max(), 230.0 + slack)

    def test_missing_temperatures_leave_the_others_alone(self):
        block = replace(block_of("tetra"), bricks=(8, 4, 3), runner=False, bend=0.0)
        missing = lambda p: np.where(
            (p[:, 0] < 1.0) & (p[:, 2] > 0.1) & (p[:, 2] < 1.7), np.nan, linear(p)
        )  # noqa: E731
        mesh, labels, items, text = self.run_box(block, missing, status=1)
        self.assertIn("part1.k4f: item 6: finite values expected", text)
        expected = EndsOfRays(mesh, linear)
        points = mesh.points[mesh.local_of[np.array(expected.labels)]]
        away = (points[:, 0] > 2.0) & (points[:, 0] < 6.9)
        rows = np.array([list(labels).index(label) for label in expected.labels])
        seen = away & ((points[:, 2] < 1e-9) | (points[:, 2] > 1.8 - 1e-9)) & (np.abs(points[:, 1] - 2.5) < 2.0)
        self.assertGreater(seen.sum(), 10)
        for item, (values, bound) in expected.items().items():
            self.assertTrue((np.abs(items[item][rows] - values) <= bound)[seen].all(), f"item {item}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
