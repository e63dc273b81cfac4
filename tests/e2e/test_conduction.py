"""Conduction in a plate against the Fourier series: frozen ratio, centre and average temperature of a plate that
cools from both sides, evaluated by the console program on hexa, wedge and tetra meshes of growing fineness.

The node temperatures are the exact solution, so the error shown is that of the evaluation alone.
QNL3DFROZENLAYER names the console program. With "--write" the table of docs/verification.md is made anew; the
test compares it with what it computes.
"""

import functools
import math
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import h5py
import numpy as np

from referee.write_mesh import Block, write_mesh
from referee.write_results import write_binary

PROGRAM = os.environ.get("QNL3DFROZENLAYER", "")
REPORT = pathlib.Path(__file__).resolve().parents[2] / "docs" / "verification.md"
MARK = "<!-- table made by tests/e2e/test_conduction.py -->"
NEXT_HEADING = "\n## "

WALL = 2.0  # mm
SIDE = 12.0  # mm
DIFFUSIVITY = 0.18 / (0.95e-3 * 2.3) * 1e-3  # mm2/s: k 0.18 W/(m K), rho 0.95 g/cm3, cp 2.3 J/(g K)
MELT, MOULD, FREEZE = 230.0, 50.0, 130.0  # degC
TIMES = (1.0, 1.5, 2.0, 2.5, 3.0)  # s
KINDS = ("hexa", "wedge", "tetra")
LAYERS = (4, 8, 16, 32)
ITEMS = {"frozen ratio, %": 1, "centre temperature, K": 3, "average temperature, K": 4}
# Corner means and the interpolation between cell middles err by at most h2/8 each of the curvature of the profile,
# which starts at about (pi / WALL)2 * (MELT - MOULD) = 444 K/mm2: 0.43 K for h = 2 mm / 32.
BOUND_FINEST = {"frozen ratio, %": 0.15, "centre temperature, K": 0.43, "average temperature, K": 0.43}
LEAST_ORDER = 1.8
TERMS = 200
MODE_FLAGS = {"--corrected": 1, "--resolved": 2}


def temperature(z, seconds):
    """Slab of thickness WALL, both faces at MOULD, started at MELT (Carslaw and Jaeger, series for the slab)."""
    total = np.zeros_like(z)
    for k in range(TERMS):
        n = (2 * k + 1) * math.pi
        total += 4.0 / n * np.sin(n * z / WALL) * math.exp(-((n / WALL) ** 2) * DIFFUSIVITY * seconds)
    return MOULD + (MELT - MOULD) * total


def average(seconds):
    total = sum(
        8.0 / n**2 * math.exp(-((n / WALL) ** 2) * DIFFUSIVITY * seconds)
        for n in ((2 * k + 1) * math.pi for k in range(TERMS))
    )
    return MOULD + (MELT - MOULD) * total


def frozen_ratio(seconds):
    low, high = 0.0, WALL / 2
    if temperature(np.array([high]), seconds)[0] < FREEZE:
        return 100.0
    for _ in range(60):
        middle = (low + high) / 2
        if temperature(np.array([middle]), seconds)[0] < FREEZE:
            low = middle
        else:
            high = middle
    return 100.0 * 2.0 * low / WALL


@functools.lru_cache
def exact(seconds):
    return {
        "frozen ratio, %": frozen_ratio(seconds),
        "centre temperature, K": temperature(np.array([WALL / 2]), seconds)[0],
        "average temperature, K": average(seconds),
    }


def write_project(folder, kind, layers):
    run = folder / "Analysis" / "Run1"
    for path in (run, folder / "Mesh", folder / "Material"):
        path.mkdir(parents=True)
    (run / "slab1.run").write_text("[MESH]\nMeshCount = 1\nM = slab.hdf\n[MATERIAL]\nMaterialCount = 1\nM = pp.toml\n")
    (folder / "Material" / "pp.toml").write_text(
        f'kind = "thermoplastic"\nfreeze_temperature = {FREEZE}\ndensity = 0.95\n'
    )
    write_mesh(
        folder / "Mesh" / "slab.hdf",
        Block(kind=kind, bricks=(10, 10, layers), size=(SIDE, SIDE, WALL), runner=False, labels=False, turned=0.0),
    )
    with h5py.File(folder / "Mesh" / "slab.hdf") as mesh:
        points = mesh["VTKHDF/Points"][()]
    for index, seconds in enumerate(TIMES):
        name = "slab1.k4f" if index == 0 else f"slab1_{index:03d}.k4f"
        write_binary(run / name, {6: temperature(points[:, 2], seconds)}, len(points), seconds=seconds)
    return run, points


# What the resolved mode must keep to, in points of the frozen ratio, by cells through the wall. The first output
# times stand at Fourier numbers of 0.02 to 0.06.
RESOLVED_BOUNDS = {2: 4.0, 3: 3.2, 4: 1.4, 6: 0.45, 8: 0.12}


def errors(kind, layers, mode="--corrected", threads=1):
    """Largest error over all times and all surface nodes away from the rim, by quantity."""
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        run, points = write_project(folder, kind, layers)
        done = subprocess.run(
            [
                PROGRAM,
                str(run / "slab1.k4f"),
                str(folder),
                "slab",
                "2",
                "1",
                "x",
                f"--intermediate-times={len(TIMES) - 1}",
                f"--threads={threads}",
                mode,
            ],
            capture_output=True,
            text=True,
            timeout=300,
        )
        assert done.returncode == 1, done.stdout + done.stderr
        away = np.abs(points[:, :2] - SIDE / 2).max(axis=1) < 0.8
        worst = dict.fromkeys(ITEMS, 0.0)
        for index, seconds in enumerate(TIMES):
            name = "slab1.fzr" if index == 0 else f"slab1_{index:03d}.fzr"
            with h5py.File(run / name) as result:
                assert result["head"].attrs["flag"] == MODE_FLAGS[mode]
                picked = away[result["node_ids"][()] - 1]
                assert picked.any()
                for quantity, item in ITEMS.items():
                    values = result[f"items/{item}"][()][picked]
                    worst[quantity] = max(worst[quantity], float(np.abs(values - exact(seconds)[quantity]).max()))
        return worst


def observed_order(by_layers):
    """Slope of log error over log cell size, least squares."""
    x = np.log([1.0 / layers for layers in LAYERS])
    y = np.log([by_layers[layers] for layers in LAYERS])
    return float(np.polyfit(x, y, 1)[0])


def table(results):
    lines = [
        "| cells | quantity | " + " | ".join(f"{n} through the wall" for n in LAYERS) + " | order |",
        "|---|---|" + "---|" * (len(LAYERS) + 1),
    ]
    for kind in KINDS:
        for quantity in ITEMS:
            by_layers = {layers: results[kind, layers][quantity] for layers in LAYERS}
            cells = " | ".join(f"{by_layers[layers]:.3f}" for layers in LAYERS)
            lines.append(f"| {kind} | {quantity} | {cells} | {observed_order(by_layers):.1f} |")
    return "\n".join(lines) + "\n"


def all_results():
    return {(kind, layers): errors(kind, layers) for kind in KINDS for layers in LAYERS}


class ResolvedMode(unittest.TestCase):
    def test_frozen_ratio_is_within_its_bounds_from_two_cells_on(self):
        for kind in KINDS:
            for layers, bound in RESOLVED_BOUNDS.items():
                with self.subTest(kind=kind, layers=layers):
                    self.assertLess(errors(kind, layers, "--resolved")["frozen ratio, %"], bound)

    def test_is_far_nearer_than_averages_of_cells(self):
        for quantity in ITEMS:
            resolved, corrected = (errors("tetra", 4, mode)[quantity] for mode in ("--resolved", "--corrected"))
            self.assertLess(resolved, corrected / 10, quantity)

    def test_does_not_depend_on_the_number_of_threads(self):
        self.assertEqual(errors("wedge", 4, "--resolved", 1), errors("wedge", 4, "--resolved", 3))


class Conduction(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.results = all_results()

    def test_finest_meshes_are_within_the_bound(self):
        for kind in KINDS:
            for quantity, bound in BOUND_FINEST.items():
                with self.subTest(kind=kind, quantity=quantity):
                    self.assertLess(self.results[kind, LAYERS[-1]][quantity], bound)

    def test_errors_fall_with_second_order(self):
        for kind in KINDS:
            for quantity in ITEMS:
                with self.subTest(kind=kind, quantity=quantity):
                    by_layers = {layers: self.results[kind, layers][quantity] for layers in LAYERS}
                    self.assertGreater(observed_order(by_layers), LEAST_ORDER)

    def test_the_report_shows_these_errors(self):
        shown = REPORT.read_text(encoding="utf-8").split(MARK)[1].split(NEXT_HEADING)[0]
        self.assertEqual(shown.strip(), table(self.results).strip())


if __name__ == "__main__":
    if "--write" in sys.argv:
        head, rest = REPORT.read_text(encoding="utf-8").split(MARK)
        behind = NEXT_HEADING + rest.split(NEXT_HEADING, 1)[1]
        REPORT.write_text(head + MARK + "\n\n" + table(all_results()) + behind, encoding="utf-8")
    else:
        unittest.main(verbosity=2)
