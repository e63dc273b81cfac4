"""frozenlayer view: the page holds what the result files hold, and what is derived from the temperatures."""
import unittest

import h5py
import numpy

from result_page import MAX_LEVEL, ResultPage
from small_project import Folder, SmallProject, flow_items, run, write_result


def write_flow(project, index, seconds, temperature):
    name = "box1.k4f" if index == 0 else f"box1_{index:03d}.k4f"
    write_result(project.file(name), flow_items(temperature), seconds, index)


def cooling_box(test, offsets=(10.0, 0.0, -10.0), **options):
    """Times 1, 2, 3 s with the temperature of SmallProject and these differences from it."""
    project = SmallProject(test, **options)
    for index, seconds, offset in zip((1, 2, 0), (1.0, 2.0, 3.0), offsets):
        write_flow(project, index, seconds, project.temperature + offset)
    return project


def make_page(test, project, *words, mode="--resolved"):
    done = run("run", project.root, mode)
    test.assertEqual(done.returncode, 0, done.stderr)
    out = project.root / "report.html"
    result = run("view", *(words or (project.root,)), "--out", out)
    test.assertEqual(result.returncode, 0, result.stderr)
    test.assertEqual(result.stdout, f"{out}\n")
    return ResultPage(out)


class ViewTest(unittest.TestCase):
    def check_items(self, page, files):
        """Every item of every file stands in the page within half a step, and nothing else does."""
        labels = page.labels()
        ids = {}
        for time, path in enumerate(files):
            with h5py.File(path) as file:
                nodes = file["node_ids"][()]
                for item in file["items"]:
                    ids.setdefault(int(item), {})[time] = dict(zip(nodes, file[f"items/{item}"][()]))
        shown = {item["id"]: item for item in page.header["items"] if item["id"] < 100}
        self.assertEqual(sorted(shown), sorted(ids))
        for number, times in ids.items():
            entry = shown[number]
            everything = numpy.concatenate([list(values.values()) for values in times.values()])
            self.assertEqual((entry["min"], entry["max"]), (everything.min(), everything.max()))
            half_step = (entry["max"] - entry["min"]) / MAX_LEVEL / 2
            for time, found in enumerate(page.item_values(entry)):
                expected = numpy.array([times[time].get(label, numpy.nan) for label in labels], dtype="f8")
                numbers, status = found
                self.assertTrue((numpy.isnan(expected) == (status == 0)).all(), entry["name"])
                known = ~numpy.isnan(expected)
                self.assertTrue((status[known] == -1).all())
                away = numpy.abs(numbers[known] - expected[known]).max()
                self.assertLessEqual(away, half_step * 1.001 + 1e-12, entry["name"])

    def test_items_of_all_times(self):
        project = cooling_box(self)
        page = make_page(self, project)
        header = page.header
        self.assertEqual((header["times"], header["time_axis"]), ([1, 2, 3], {"name": "Time", "unit": "s"}))
        self.check_items(page, [project.file(name) for name in ("box1_001.fzr", "box1_002.fzr", "box1.fzr")])
        self.assertEqual((page.item("Frozen ratio")["unit"], header["items"][0]["name"]), ("%", "Frozen ratio"))

    def test_example(self):
        root = Folder(self).copy_example("ribbed-cover")
        done = run("run", root, "--intermediate-times", 1, "--view", root / "page.html")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(f"Page written:\n  {root / 'page.html'}\n", done.stdout)
        page = ResultPage(root / "page.html")
        self.assertEqual(page.header["times"], [0.25, 6.4])
        self.check_items(page, [root / "Analysis/Run1" / name for name in ("cover1_001.fzr", "cover1.fzr")])
        # Nodes spread over the part, and those of the last regions to freeze that are not among them.
        self.assertGreaterEqual(page.header["profiles"]["nodes"], 2000)
        self.assertLessEqual(page.header["profiles"]["nodes"], 2000 + len(page.header["regions"]))

    def test_surface(self):
        project = cooling_box(self)
        page = make_page(self, project)
        labels, positions, triangles = page.labels(), page.positions(), page.triangles()
        numpy.testing.assert_array_equal(positions, project.points[labels.astype("i4") - 1].astype("f4"))
        self.assertEqual(len(labels), 7 * 5 * 5 - 5 * 3 * 3)
        a, b, c = (positions[triangles[:, k]].astype("f8") for k in range(3))
        self.assertAlmostEqual(numpy.einsum("ij,ij->", a, numpy.cross(b, c)) / 6, 12.0 * 8.0 * 2.0, places=4)
        smallest = triangles.min(axis=1).astype("i8")
        self.assertTrue((numpy.diff(smallest) >= 0).all())

    def test_time_to_freeze(self):
        # Seen from above, the layers' mean temperatures are 97.5 and 132.5 degC, plus the difference of the time.
        page = make_page(self, cooling_box(self), mode="--corrected")
        positions = page.positions()
        middle = ((positions[:, 0] == 6) & (positions[:, 1] == 4)).nonzero()[0]
        self.assertEqual(len(middle), 2)
        entry = page.item("Time to freeze")
        self.assertEqual((entry["steady"], entry["unit"]), (True, "s"))
        numbers, status = page.item_values(entry)[0]
        self.assertTrue((status == -1).all())
        step = (entry["max"] - entry["min"]) / MAX_LEVEL
        numpy.testing.assert_allclose(numbers[middle], 2.25, atol=step + 1e-6)
        walls = page.item("Wall thickness")
        numpy.testing.assert_allclose(
            page.item_values(walls)[0][0][middle], 2.0, atol=(walls["max"] - walls["min"]) / MAX_LEVEL + 1e-6
        )

    def test_never_frozen_is_a_status_and_comes_first(self):
        page = make_page(self, cooling_box(self, offsets=(40.0, 30.0, 20.0)))
        self.assertEqual(page.header["statuses"], ["no result", "never frozen"])
        numbers, status = page.item_values(page.item("Time to freeze"))[0]
        self.assertTrue((status[(page.positions()[:, 0] == 6) & (page.positions()[:, 1] == 4)] == 1).all())
        self.assertTrue(numpy.isnan(numbers[status == 1]).all())
        self.assertIsNone(page.header["regions"][0]["time"])
        self.assertIn(page.header["regions"][0]["label"], page.labels()[status == 1])

    def test_regions_are_local_maxima_ranked_by_time(self):
        project = SmallProject(self, size=(24.0, 8.0, 2.0), cells=(12, 4, 4))
        x, y, z = project.points.T
        # Two hot spots: the one at x = 20 stays hot longer.
        spots = 60.0 * numpy.exp(-((x - 4) ** 2 + (y - 4) ** 2)) + 90.0 * numpy.exp(-((x - 20) ** 2 + (y - 4) ** 2))
        for index, seconds in ((1, 1.0), (2, 5.0), (0, 9.0)):
            write_flow(project, index, seconds, 140.0 + spots - 10.0 * seconds + 0.01 * z)
        page = make_page(self, project, mode="--corrected")
        times = [region["time"] for region in page.header["regions"]]
        self.assertEqual(times, sorted(times, reverse=True))
        # Rays on either side of a cell see the same cell, so an area reaches one node beyond its spot.
        places = [region["x"] for region in page.header["regions"]]
        self.assertLessEqual(abs(places[0] - 20.0), 2.0)
        self.assertTrue(any(abs(place - 4.0) <= 2.0 for place in places), places)

    def test_frozen_shares(self):
        # Corner means by layer: 97.5, 132.5, 132.5, 97.5 degC plus the difference; by side face layer the same.
        page = make_page(self, cooling_box(self))
        curves = {curve["name"]: curve["values"] for curve in page.header["curves"]}
        numpy.testing.assert_allclose(curves["of the volume"], [50.0, 50.0, 100.0])
        side = 2 * (12.0 + 8.0) * 2.0
        all_area = side + 2 * 96.0
        numpy.testing.assert_allclose(
            curves["of the surface"], [100 * (all_area - side / 2) / all_area] * 2 + [100.0], rtol=1e-9
        )

    def test_profiles(self):
        page = make_page(self, cooling_box(self), mode="--corrected")
        self.assertIn("Results of the corrected mode", page.header["profiles"]["source"])
        profiles = page.header["profiles"]
        nodes = page.block("profile-nodes", "u4", profiles["nodes"])
        counts = page.block("profile-counts", "u4", profiles["nodes"])
        self.assertEqual(counts.sum(), profiles["samples"])
        depths = page.block("profile-depths", "u4", profiles["samples"]).view("f4")
        positions = page.positions()
        place = next(i for i, node in enumerate(nodes) if tuple(positions[node]) == (6.0, 4.0, 2.0))
        begin = counts[:place].sum()
        mine = slice(begin, begin + counts[place])
        numpy.testing.assert_allclose(depths[mine], [0, 0.25, 0.75, 1.25, 1.75, 2.0], atol=1e-6)
        step = (profiles["max"] - profiles["min"]) / MAX_LEVEL
        for (values, _), offset in zip(page.values(profiles, profiles["samples"]), (10, 0, -10)):
            expected = numpy.array([80.0, 97.5, 132.5, 132.5, 97.5, 80.0]) + offset
            numpy.testing.assert_allclose(values[mine], expected, atol=step + 1e-4)

    def test_named_results_only(self):
        project = cooling_box(self)
        files = [project.file("box1.fzr"), project.file("box1_001.fzr")]
        page = make_page(self, project, *files)
        self.assertEqual(page.header["times"], [1, 3])
        self.check_items(page, files[::-1])
        self.assertEqual(make_page(self, project, files[1]).header["times"], [1, 2, 3])

    def test_a_run_shows_only_what_it_wrote(self):
        project = cooling_box(self)
        run("run", project.root)
        out = project.root / "page.html"
        result = run("run", project.root, "--intermediate-times", 0, "--view", out, "--export", project.root / "files")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(ResultPage(out).header["times"], [3])
        self.assertEqual(
            sorted(path.name for path in project.root.glob("files*")),
            ["files.pvd", "files_0001.vtp", "files_static.vtp"],
        )

    def test_times_that_are_not_known_are_numbered(self):
        project = cooling_box(self)
        write_flow(project, 2, None, project.temperature)
        page = make_page(self, project)
        self.assertEqual(
            (page.header["times"], page.header["time_axis"]), ([1, 2, 3], {"name": "Output index", "unit": ""})
        )
        self.check_items(page, [project.file(name) for name in ("box1_001.fzr", "box1_002.fzr", "box1.fzr")])

    def test_warp_has_no_temperatures(self):
        project = SmallProject(self)
        run("run", project.file("box1.k4w"))
        out = project.root / "warp.html"
        result = run("view", project.file("box1.wzr"), "--out", out)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("no temperatures", result.stderr)
        header = ResultPage(out).header
        names = [item["name"] for item in header["items"]]
        self.assertEqual((names[0], names[-1]), ("Sink-mark displacement", "Wall thickness"))
        self.assertNotIn("Time to freeze", names)
        self.assertEqual((header["profiles"], header["curves"], header["regions"]), (None, [], []))

    def test_names_cannot_break_the_page(self):
        project = cooling_box(self)
        mesh = project.root / "Mesh/box.hdf"
        mesh.rename(mesh.with_name("<b>.hdf"))
        project.file("box1.run").write_text(project.file("box1.run").read_text().replace("box.hdf", "<b>.hdf"))
        page = make_page(self, project)
        self.assertEqual(page.header["facts"][0], {"name": "Mesh", "value": "<b>.hdf"})
        self.assertNotIn("<b>", page.text.split('id="qnl-header">')[1].split("</script>")[0])

    def test_refusals(self):
        project = cooling_box(self)
        out = project.root / "report.html"
        cases = [
            ((project.root,), "no frozen-layer result is there"),
            ((project.file("box1.fzr"),), "no frozen-layer result is there"),
            ((project.root / "Mesh/box.hdf",), "a file of a run is expected at"),
            ((project.file("box1.run"),), "neither a frozen-layer result"),
        ]
        for words, text in cases:
            with self.subTest(words=words):
                result = run("view", *words, "--out", out)
                self.assertEqual((result.returncode, text in result.stderr), (1, True), result.stderr)
                self.assertFalse(out.exists())
        run("run", project.root)
        self.assertIn("end it in .html", run("view", project.root, "--out", project.root / "x.hdf").stderr)
        missing = run("view", project.root, "--out", project.root / "nowhere/report.html")
        self.assertEqual(missing.returncode, 1)
        self.assertIn("nowhere is no folder: make it first", missing.stderr)
        with h5py.File(project.file("box1.fzr"), "a") as file:
            file["node_ids"][0] = 88
        result = run("view", project.root, "--out", out)
        self.assertEqual(result.returncode, 1)
        self.assertIn("node 88 is not on the surface", result.stderr)
        self.assertFalse(out.exists())


if __name__ == "__main__":
    unittest.main()
