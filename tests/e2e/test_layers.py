"""The frozen layers of the resolved mode, in millimetres, wherever they are shown: on a wall of 2 mm with a parabola of
temperatures, which the mode sees exactly but for chords of 0.05 K, against the closed form."""
import csv
import io
import json
import math
import re
import unittest

import numpy

from result_page import ResultPage
from small_project import SmallProject, flow_items, run, write_result
from vtk_xml import VtkFile

WALL = 2.0
RISE = 70.0
FREEZE = 130.0
TIMES = ((1, 1.0, 100.0), (2, 2.0, 80.0), (0, 3.0, 40.0))  # index, s, temperature of both sides
NAMES = ("Frozen layer, this side [mm]", "Frozen layer, far side [mm]", "Molten core [mm]")


def layers(side):
    """Frozen layer on either side and molten core, mm."""
    share = 1.0 - (FREEZE - side) / RISE
    core = WALL * math.sqrt(share) if share >= 0.0 else 0.0
    frozen = (WALL - core) / 2 if core > 0.0 else WALL
    return frozen, frozen, core


class LayersTest(unittest.TestCase):
    def cooled_box(self):
        project = SmallProject(self, size=(12.0, 8.0, WALL))
        height = project.points[:, 2] / WALL
        for index, seconds, side in TIMES:
            temperature = side + RISE * (1.0 - (2.0 * height - 1.0) ** 2)
            name = "box1.k4f" if index == 0 else f"box1_{index:03d}.k4f"
            write_result(project.file(name), flow_items(temperature), seconds, index)
        done = run("run", project.root, "--view", project.root / "page.html", "--export", project.root / "out")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("resolved mode", done.stderr)
        return project, done.stdout

    @staticmethod
    def top_and_bottom(points):
        """Nodes on both sides of the wall, away from its rim."""
        inside = (points[:, 0] > 1) & (points[:, 0] < 11) & (points[:, 1] > 1) & (points[:, 1] < 7)
        return inside & ((points[:, 2] == 0) | (points[:, 2] == WALL))

    def test_in_the_export(self):
        project, _ = self.cooled_box()
        for t, (_, _, side) in enumerate(TIMES):
            file = VtkFile(project.root / f"out_{t + 1:04d}.vtp")
            chosen = self.top_and_bottom(file.points)
            self.assertGreater(chosen.sum(), 10)
            for name, expected in zip(NAMES, layers(side)):
                numpy.testing.assert_allclose(file.arrays[name][chosen], expected, atol=1.5e-3, err_msg=name)
        static = VtkFile(project.root / "out_static.vtp")
        chosen = self.top_and_bottom(static.points)
        numpy.testing.assert_allclose(static.arrays["Time to freeze [s]"][chosen], 2.5, atol=1e-4)

    def test_on_the_page(self):
        project, _ = self.cooled_box()
        page = ResultPage(project.root / "page.html")
        chosen = self.top_and_bottom(page.positions())
        for name, expected in zip(NAMES, zip(*(layers(side) for _, _, side in TIMES))):
            item = page.item(name.removesuffix(" [mm]"))
            self.assertEqual(item["unit"], "mm")
            for (values, _), value in zip(page.item_values(item), expected):
                numpy.testing.assert_allclose(values[chosen], value, atol=1.5e-3, err_msg=name)
        self.assertIn("Resolved mode", page.header["profiles"]["source"])
        self.assertIn({"name": "Mode", "value": "resolved"}, page.header["facts"])

    def test_profiles_are_the_field_itself(self):
        project, _ = self.cooled_box()
        page = ResultPage(project.root / "page.html")
        profiles = page.header["profiles"]
        nodes = page.block("profile-nodes", "u4", profiles["nodes"])
        counts = page.block("profile-counts", "u4", profiles["nodes"])
        depths = page.block("profile-depths", "u4", profiles["samples"]).view("f4")
        chosen = numpy.repeat(self.top_and_bottom(page.positions())[nodes], counts)
        self.assertGreater(chosen.sum(), 100)
        for (values, _), (_, _, side) in zip(page.values(profiles, profiles["samples"]), TIMES):
            share = 2.0 * depths[chosen] / WALL - 1.0
            numpy.testing.assert_allclose(values[chosen], side + RISE * (1.0 - share**2), atol=0.06)

    def test_every_last_region_has_a_profile_of_its_own(self):
        project, _ = self.cooled_box()
        page = ResultPage(project.root / "page.html")
        nodes = page.block("profile-nodes", "u4", page.header["profiles"]["nodes"])
        labels = page.block("labels", "u4", page.header["nodes"])
        self.assertTrue(page.header["regions"])
        for region in page.header["regions"]:
            self.assertIn(region["label"], labels[nodes])

    def test_in_the_tables_of_the_run(self):
        _, told = self.cooled_box()
        tables = told.split("Output time ")[1:]
        for table, (_, _, side) in zip(tables, TIMES):
            core = re.search(r"Molten core +mm +(\S+) +(\S+) +(\S+) +(\d+)", table)
            self.assertLessEqual(float(core[1]), layers(side)[2] + 1e-4)
            self.assertGreaterEqual(float(core[3]), layers(side)[2] - 1e-4)
            self.assertRegex(table, r"Wall thickness +mm")

    def test_in_the_probe(self):
        project, _ = self.cooled_box()
        told = run("probe", project.root, "--point", "6,4,2")
        rows = list(csv.DictReader(io.StringIO(told.stdout)))
        for (_, seconds, side), want in ((time, layers(time[2])) for time in TIMES):
            mine = [row for row in rows if float(row["Time [s]"]) == seconds]
            for name, expected in zip((*NAMES, "Wall thickness [mm]"), (*want, WALL)):
                self.assertEqual(len({row[name] for row in mine}), 1)
                self.assertAlmostEqual(float(mine[0][name]), expected, delta=1.5e-3)
            depth = numpy.array([float(row["Depth [mm]"]) for row in mine])
            temperature = numpy.array([float(row["Temperature [°C]"]) for row in mine])
            share = 2.0 * depth / WALL - 1.0
            numpy.testing.assert_allclose(temperature, side + RISE * (1.0 - share**2), atol=0.05)
            self.assertEqual((depth[0], round(depth[-1], 6)), (0.0, WALL))

    def test_in_info(self):
        project, _ = self.cooled_box()
        told = json.loads(run("info", project.file("box1_002.fzr"), "--json").stdout)
        rows = {row["meaning"]: row for row in told["layers"]}
        self.assertEqual(set(rows), {*(name.removesuffix(" [mm]") for name in NAMES), "Wall thickness"})
        self.assertLessEqual(rows["Molten core"]["min"], layers(80.0)[2] + 1e-4)
        self.assertEqual(rows["Molten core"]["unit"], "mm")

    def test_info_without_the_project(self):
        project, _ = self.cooled_box()
        project.file("box1_002.k4f").unlink()
        told = run("info", project.file("box1_002.fzr"), "--json")
        self.assertEqual(told.returncode, 0, told.stdout)
        self.assertIn("box1_002.k4f is missing", json.loads(told.stdout)["layers_missing"])

    def test_without_a_freeze_temperature_only_the_wall_is_told(self):
        project = SmallProject(self, size=(12.0, 8.0, WALL), marker=False)
        (project.root / "Material/pp.toml").write_text('kind = "thermoset"\n')
        done = run("run", project.root, "--intermediate-times", 0, "--export", project.root / "out")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertNotIn("Molten core", done.stdout)
        self.assertRegex(done.stdout, r"Wall thickness +mm")
        self.assertNotIn(NAMES[2], VtkFile(project.root / "out_0001.vtp").arrays)
        row = next(csv.DictReader(io.StringIO(run("probe", project.root, "--point", "6,4,2").stdout)))
        self.assertEqual([row[name] for name in NAMES], ["", "", ""])
        self.assertAlmostEqual(float(row["Wall thickness [mm]"]), WALL, delta=1e-5)

    def test_other_modes_have_none(self):
        project, _ = self.cooled_box()
        for mode in ("--corrected", "--classic"):
            done = run("run", project.root, mode, "--export", project.root / "out")
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertNotIn(NAMES[0], VtkFile(project.root / "out_0001.vtp").arrays)
            self.assertNotIn("Molten core", done.stdout)
            self.assertNotIn("layers", json.loads(run("info", project.file("box1.fzr"), "--json").stdout))

    def test_results_of_two_modes_are_not_one_series(self):
        project, _ = self.cooled_box()
        run("run", project.file("box1.k4f"), "--corrected", "--intermediate-times", 0)
        told = run("view", project.root, "--out", project.root / "mixed.html")
        self.assertEqual(told.returncode, 1)
        self.assertIn("one in the resolved and one in the corrected mode", told.stderr)


if __name__ == "__main__":
    unittest.main()
