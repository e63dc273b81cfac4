"""frozenlayer export and probe: the files read back hold what the result files and the temperatures say."""
import csv
import io
import re
import unittest

import h5py
import numpy

from small_project import Folder, SmallProject, run
from test_run import PEOPLE
from test_view import cooling_box, write_flow
from vtk_xml import VtkFile, read_collection

RESULTS = ("box1_001.fzr", "box1_002.fzr", "box1.fzr")


def label_of(item):
    name, unit = PEOPLE[item]
    return name if unit == "-" else f"{name} [{unit.replace('/', ' per ')}]"


def column(columns, item):
    """The values of an item: an array, or one component of a vector."""
    label = label_of(item)
    if label in columns or ", " not in label:
        return columns[label]
    vector, axis = re.fullmatch(r"(.*), ([xyz])( .*)?", label).group(1, 2)
    unit = label[len(vector) + 3 :]
    return columns[vector + unit][:, "xyz".index(axis)]


def read_rows(text):
    """Column -> list of texts."""
    rows = list(csv.reader(io.StringIO(text)))
    return {name: [row[i] for row in rows[1:]] for i, name in enumerate(rows[0])}


def export(test, project, *words, name="out", mode="--resolved"):
    done = run("run", project.root, mode)
    test.assertEqual(done.returncode, 0, done.stderr)
    result = run("export", project.root, "--out", project.root / name, *words)
    test.assertEqual(result.returncode, 0, result.stderr)
    return result


class ExportTest(unittest.TestCase):
    def check_frame(self, labels, status, columns, path):
        """Columns by label against a result file: equal values, not a number elsewhere."""
        with h5py.File(path) as file:
            place = {label: i for i, label in enumerate(file["node_ids"][()])}
            rows = numpy.array([place.get(label, -1) for label in labels])
            numpy.testing.assert_array_equal(status, (rows < 0).astype("i4"))
            for item in file["items"]:
                expected = numpy.where(rows < 0, numpy.nan, file[f"items/{item}"][()][rows])
                numpy.testing.assert_array_equal(
                    numpy.asarray(column(columns, int(item)), "f4"), expected.astype("f4"), item
                )

    def test_files_by_time(self):
        project = cooling_box(self)
        result = export(self, project)
        entries = read_collection(project.root / "out.pvd")
        self.assertEqual(entries, [(1, "out_0001.vtp"), (2, "out_0002.vtp"), (3, "out_0003.vtp")])
        for (time, name), source in zip(entries, RESULTS):
            self.assertIn(str(project.root / name), result.stdout)
            file = VtkFile(project.root / name)
            self.assertEqual(file.numbers["TimeValue"], time)
            labels = file.arrays["Node label"]
            numpy.testing.assert_array_equal(file.points, project.points[labels - 1].astype("f4"))
            self.check_frame(labels, file.arrays["Status"], file.arrays, project.file(source))

    def test_runner_nodes_are_not_numbers_and_say_so(self):
        root = Folder(self).copy_example("ribbed-cover")
        result = run("run", root, "--intermediate-times", 1, "--export", root / "cover")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual([time for time, _ in read_collection(root / "cover.pvd")], [0.25, 6.4])
        for name, source in (("cover_0001.vtp", "cover1_001.fzr"), ("cover_0002.vtp", "cover1.fzr")):
            file = VtkFile(root / name)
            self.assertEqual(set(file.arrays["Status"]), {0, 1})
            self.check_frame(
                file.arrays["Node label"], file.arrays["Status"], file.arrays, root / "Analysis/Run1" / source
            )

    def test_faces_enclose_the_part(self):
        project = cooling_box(self)
        export(self, project)
        export(self, project, "--to", "vtu", "--force", name="grid")
        polygons, grid = VtkFile(project.root / "out_static.vtp"), VtkFile(project.root / "grid_static.vtu")
        self.assertEqual((polygons.kind, grid.kind), ("PolyData", "UnstructuredGrid"))
        self.assertEqual((polygons.counts["NumberOfPolys"], grid.counts["NumberOfCells"]), (128, 128))
        self.assertEqual(set(grid.cells["types"]), {9})
        for file in (polygons, grid):
            corners = file.points[file.cells["connectivity"]].astype("f8").reshape(-1, 4, 3)
            numpy.testing.assert_array_equal(file.cells["offsets"], 4 * numpy.arange(1, 129))
            volume = sum(
                numpy.einsum("ij,ij->", corners[:, 0], numpy.cross(corners[:, a], corners[:, a + 1])) / 6
                for a in (1, 2)
            )
            self.assertAlmostEqual(volume, 192.0, places=4)

    def test_what_does_not_depend_on_time(self):
        project = cooling_box(self)
        export(self, project, mode="--corrected")
        file = VtkFile(project.root / "out_static.vtp")
        self.assertEqual(file.numbers, {"Freeze temperature [°C]": 130.0})
        top = ((file.points == (6, 4, 2)).all(axis=1)).nonzero()[0][0]
        self.assertEqual((file.arrays["Freeze status"][top], file.arrays["Wall status"][top]), (0, 0))
        for name, expected in (
            ("Wall thickness [mm]", 2.0),
            ("Inward direction", (0, 0, -1)),
            ("Opposite hit point [mm]", (6, 4, 0)),
            ("Time to freeze [s]", 2.25),
        ):
            numpy.testing.assert_allclose(file.arrays[name][top], expected, atol=2e-6, err_msg=name)

    def test_status_of_nodes_that_never_freeze(self):
        project = cooling_box(self, offsets=(40.0, 30.0, 20.0))
        export(self, project)
        arrays = VtkFile(project.root / "out_static.vtp").arrays
        never = arrays["Freeze status"] == 2
        self.assertTrue(never.any())
        numpy.testing.assert_array_equal(numpy.isnan(arrays["Time to freeze [s]"]), arrays["Freeze status"] != 0)
        first = arrays["Last to freeze, rank"] == 1
        self.assertTrue(first.any() and never[first].all())

    def test_ranks_are_local_maxima(self):
        project = SmallProject(self, size=(40.0, 40.0, 2.0), cells=(10, 10, 2))
        noise = numpy.random.default_rng(5).uniform(0.0, 60.0, len(project.points))
        for index, seconds, offset in ((1, 1.0, 60.0), (2, 4.0, 5.0), (0, 9.0, -32.0)):
            write_flow(project, index, seconds, project.temperature + noise + offset)
        export(self, project, mode="--corrected")
        file = VtkFile(project.root / "out_static.vtp")
        status, rank = file.arrays["Freeze status"], file.arrays["Last to freeze, rank"]
        self.assertEqual(set(status), {0, 2})
        time = numpy.where(status == 2, numpy.inf, file.arrays["Time to freeze [s]"])
        neighbours = [set() for _ in time]
        for face in file.cells["connectivity"].reshape(-1, 4):
            for a, b in zip(face, numpy.roll(face, 1)):
                neighbours[a].add(b)
                neighbours[b].add(a)
        times_by_rank = {}
        for node, around in enumerate(neighbours):
            equal = [n for n in around if time[n] == time[node]]
            if rank[node] > 0:
                self.assertTrue(all(time[n] <= time[node] for n in around))
                self.assertTrue(all(rank[n] == rank[node] for n in equal))
                times_by_rank.setdefault(rank[node], set()).add(time[node])
            elif not equal:
                self.assertTrue(any(time[n] > time[node] for n in around))
        self.assertGreater(len(times_by_rank), 3)
        self.assertEqual(sorted(times_by_rank), list(range(1, len(times_by_rank) + 1)))
        ordered = [times_by_rank[k] for k in sorted(times_by_rank)]
        self.assertTrue(all(len(times) == 1 for times in ordered))
        flat = [next(iter(times)) for times in ordered]
        self.assertEqual(flat, sorted(flat, reverse=True))

    def test_rows_of_numbers(self):
        project = cooling_box(self)
        export(self, project, "--to", "csv")
        times = read_rows((project.root / "out_times.csv").read_text())
        self.assertEqual(times, {"File": ["out_0001.csv", "out_0002.csv", "out_0003.csv"], "Time [s]": ["1", "2", "3"]})
        for name, source in zip(times["File"], RESULTS):
            columns = read_rows((project.root / name).read_text())
            labels = numpy.array(columns["Node label"], "i4")
            places = numpy.array([columns[f"{axis} [mm]"] for axis in "xyz"], "f4").T
            numpy.testing.assert_array_equal(places, project.points[labels - 1].astype("f4"))
            self.check_frame(labels, numpy.array(columns["Status"], "i4"), columns, project.file(source))
        static = read_rows((project.root / "out_static.csv").read_text())
        self.assertEqual(set(static["Freeze temperature [°C]"]), {"130"})

    def test_looks_along_the_normals_of_the_run(self):
        """At (2, 4, 2), next to an edge of the box, the smoothed normal leans towards it."""
        project = cooling_box(self)

        def inward(*run_words, before_export=lambda: None):
            done = run("run", project.root, "--corrected", *run_words)
            self.assertEqual(done.returncode, 0, done.stderr)
            before_export()
            result = run("export", project.root, "--out", project.root / "out", "--force")
            self.assertEqual(result.returncode, 0, result.stderr)
            file = VtkFile(project.root / "out_static.vtp")
            node = ((file.points == (2, 4, 2)).all(axis=1)).nonzero()[0][0]
            return file.arrays["Inward direction"][node], file.arrays["Wall thickness [mm]"][node]

        direction, wall = inward("--analysis-code", 2)
        self.assertEqual((*direction, wall), (0, 0, -1, 2))
        leaning, longer = inward(before_export=project.file("QNLIntermediateOutputTime.log").unlink)
        self.assertGreater(leaning[0], 0.05)
        self.assertAlmostEqual(longer, 2 / -leaning[2], places=5)
        run("run", project.file("box1.k4f"), "--corrected", "--intermediate-times", 0)
        for word in ("export", "view"):
            mixed = run(word, project.root, "--out", project.root / "mixed.html")
            self.assertEqual(mixed.returncode, 1)
            self.assertIn("of which one smoothed the normals and one did not", mixed.stderr)

    def test_compression_needs_a_format_that_has_it(self):
        project = cooling_box(self)
        export(self, project, "--to", "hdf", "--compress")
        result = run("export", project.root, "--out", project.root / "rows", "--to", "csv", "--compress")
        self.assertEqual(result.returncode, 1)
        self.assertIn("--compress has no meaning with --to csv", result.stderr)
        self.assertEqual(list(project.root.glob("rows*")), [])

    def test_vectors(self):
        """Velocity and displacement have three components, rows of numbers a column for each."""
        project = cooling_box(self)
        export(self, project, mode="--classic")
        export(self, project, "--to", "csv", mode="--classic")
        arrays = VtkFile(project.root / "out_0001.vtp").arrays
        columns = read_rows((project.root / "out_0001.csv").read_text())
        for vector, unit in (("Average velocity", "cm per s"), ("Sink-mark displacement", "mm")):
            values = arrays[f"{vector} [{unit}]"]
            self.assertEqual(values.shape, (len(arrays["Status"]), 3))
            for k, axis in enumerate("xyz"):
                self.assertNotIn(f"{vector}, {axis} [{unit}]", arrays)
                mine = numpy.array(columns[f"{vector}, {axis} [{unit}]"], "f4")
                numpy.testing.assert_array_equal(mine, values[:, k])
        self.assertEqual(arrays["Sink-mark displacement, total [mm]"].ndim, 1)

    def test_the_ending_tells_the_format(self):
        project = cooling_box(self)
        for name, ending in (
            ("a.vtu", ".vtu"),
            ("b.vtp", ".vtp"),
            ("c.pvd", ".vtp"),
            ("d.hdf", ".hdf"),
            ("e.hdf.series", ".hdf"),
            ("f.csv", ".csv"),
            ("g", ".vtp"),
        ):
            with self.subTest(name=name):
                export(self, project, name=name, mode="--classic")
                self.assertTrue((project.root / f"{name[0]}_0003{ending}").exists())
        export(self, project, "--to", "vtu", name="h.pvd", mode="--classic")
        self.assertTrue((project.root / "h_0003.vtu").exists())
        done = run("run", project.root, "--classic", "--export", project.root / "i.vtu")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue((project.root / "i_0003.vtu").exists())
        for name, to in (("x.vtu", "csv"), ("x.csv", "hdf"), ("x.hdf", "pvd"), ("x.vtp", "vtu")):
            refused = run("export", project.root, "--out", project.root / name, "--to", to)
            self.assertEqual(refused.returncode, 1)
            self.assertIn(f"{name} and --to {to} do not go together: leave out --to", refused.stderr)
        self.assertEqual(list(project.root.glob("x*")), [])

    def test_notes_tell_what_is_left_out(self):
        project = cooling_box(self)
        self.assertEqual(export(self, project).stderr, "")
        write_flow(project, 1, None, project.temperature)
        noted = run("export", project.root, "--out", project.root / "numbered")
        notes = noted.stderr.splitlines()
        self.assertEqual(notes[0], "Not every stage file tells its time: output times are numbered from 1.")
        self.assertRegex(
            notes[1], r"^Warning: 1 of 3 results \(box1_001.fzr\) is stale: the stage result box1_001.k4f "
        )
        self.assertEqual(len(notes), 2)
        self.assertEqual([time for time, _ in read_collection(project.root / "numbered.pvd")], [1, 2, 3])
        (project.root / "Material/pp.toml").write_text('kind = "thermoset"\n')
        noted = run("export", project.root, "--out", project.root / "thermoset")
        self.assertEqual(noted.returncode, 0, noted.stderr)
        self.assertIn("The material has no freeze temperature: there are no times to freeze.\n", noted.stderr)
        self.assertNotIn("Freeze status", VtkFile(project.root / "thermoset_static.vtp").arrays)

    def test_a_thermoset_is_no_fault(self):
        """Its packing index is infinite everywhere, and nothing else is wrong."""
        project = cooling_box(self)
        (project.root / "Material/pp.toml").write_text('kind = "thermoset"\n')
        done = run("run", project.root, "--export", project.root / "run")
        self.assertEqual(done.returncode, 0, done.stderr)
        with h5py.File(project.file("box1.fzr")) as file:
            self.assertFalse(numpy.isfinite(file["items/11"][()]).any())
        self.assertNotIn("fault", export(self, project).stderr)
        with h5py.File(project.file("box1.fzr"), "a") as file:
            file["items/2"][0] = numpy.nan
        told = run("export", project.root, "--out", project.root / "out", "--force")
        self.assertEqual(told.returncode, 1)
        self.assertIn("1 fault:", told.stderr)
        self.assertIn("item 2: finite values expected", told.stderr)

    def test_names_without_a_file_are_refused(self):
        project = cooling_box(self)
        export(self, project)
        for words in (
            ("export", project.root, "--out", f"{project.root}/"),
            ("export", project.root, "--out", ""),
            ("export", project.root, "--out", f"{project.root}/.pvd"),
            ("probe", project.root, "--point", "6,4,2", "--out", f"{project.root}/.csv"),
        ):
            with self.subTest(words=words):
                result = run(*words)
                self.assertEqual((result.returncode, result.stdout), (1, ""))
                self.assertIn("--out: ", result.stderr)
                self.assertIn("names no file", result.stderr)
        self.assertEqual(list(project.root.glob(".*")), [])

    def test_hdf_files_that_cannot_be_written(self):
        project = cooling_box(self)
        done = run("run", project.root)
        self.assertEqual(done.returncode, 0, done.stderr)
        (project.root / "out_0002.hdf").mkdir()
        result = run("export", project.root, "--out", project.root / "out.hdf", "--to", "hdf", "--force")
        self.assertEqual(result.returncode, 1)
        self.assertIn("out_0002.hdf", result.stderr)
        self.assertEqual(sorted(path.name for path in project.root.glob("out*")), ["out_0001.hdf", "out_0002.hdf"])

    def test_existing_files_are_refused(self):
        project = cooling_box(self)
        export(self, project)
        before = (project.root / "out_0001.vtp").read_bytes()
        (project.root / "out_0001.vtp").write_bytes(b"mine")
        result = run("export", project.root, "--out", project.root / "out.pvd")
        self.assertEqual(result.returncode, 1)
        self.assertIn("out_0001.vtp is there already", result.stderr)
        self.assertEqual((project.root / "out_0001.vtp").read_bytes(), b"mine")
        self.assertEqual(run("export", project.root, "--out", project.root / "out.pvd", "--force").returncode, 0)
        self.assertEqual((project.root / "out_0001.vtp").read_bytes(), before)
        result = run("export", project.root, "--out", project.root / "nowhere/out")
        self.assertEqual(result.returncode, 1)
        self.assertIn("nowhere is no folder", result.stderr)
        self.assertEqual(run("export", project.root, "--out", project.root / "x", "--to", "foo").returncode, 1)


class ProbeTest(unittest.TestCase):
    EXPECTED = numpy.array([80.0, 97.5, 132.5, 132.5, 97.5, 80.0])

    def probed_box(self):
        project = cooling_box(self)
        done = run("run", project.root, "--corrected")
        self.assertEqual(done.returncode, 0, done.stderr)
        return project

    def check_rows(self, columns, label):
        """Elements share a depth where the ray runs along their edge; all of one depth have one temperature."""
        self.assertEqual(set(columns["Node label"]), {str(label)})
        times = numpy.array(columns["Time [s]"], "f8")
        self.assertEqual(sorted(set(times)), [1, 2, 3])
        depths, temperatures = (numpy.array(columns[name], "f8") for name in ("Depth [mm]", "Temperature [°C]"))
        for time, offset in ((1, 10), (2, 0), (3, -10)):
            mine = times == time
            self.assertTrue((numpy.diff(depths[mine]) >= -1e-9).all())
            levels = dict(zip(depths[mine].round(6), temperatures[mine]))
            numpy.testing.assert_allclose(sorted(levels), [0, 0.25, 0.75, 1.25, 1.75, 2.0], atol=1e-6)
            numpy.testing.assert_allclose(
                [levels[depth] for depth in sorted(levels)], self.EXPECTED + offset, atol=1e-4
            )
        frozen = numpy.array(columns["Frozen"], "i4")
        numpy.testing.assert_array_equal(frozen, (temperatures < 130.0).astype("i4"))
        self.assertEqual(set(columns["Element kind"]), {"face", "cell"})

    def test_places_beside_the_part(self):
        project = self.probed_box()
        far = run("probe", project.root, "--point", "6,4,3.5")
        self.assertEqual((far.returncode, far.stdout), (1, ""))
        self.assertRegex(
            far.stderr,
            r"\Afrozenlayer: point 6,4,3.5 is 1.5 mm away from the surface, farther than half of the wall there, 1 mm: "
            r"the nearest surface node is \d+ at 6,4,2, 1.5 mm away; .*--nearest\n\Z",
        )
        taken = run("probe", project.root, "--point", "6,4,3.5", "--nearest")
        self.assertEqual(taken.returncode, 0, taken.stderr)
        self.assertEqual(taken.stdout, run("probe", project.root, "--point", "6,4,2").stdout)
        for place in ("6,4,2.9", "7.2,5.3,2", "6,4,1.2"):
            self.assertEqual(run("probe", project.root, "--point", place).returncode, 0, place)

    def test_elements_are_those_of_the_search(self):
        """Whether the run smoothed its normals or not; every third surface node."""
        project = cooling_box(self)
        faces = 128
        for words, name in ((("--analysis-code", 2), "box.sur"), ((), "box_s.sur")):
            done = run("run", project.root, "--corrected", *words)
            self.assertEqual(done.returncode, 0, done.stderr)
            run("export", project.root, "--out", project.root / "out", "--force")
            file = VtkFile(project.root / "out_static.vtp")
            in_order_of_faces = list(dict.fromkeys(file.cells["connectivity"].tolist()))
            labels = file.arrays["Node label"][in_order_of_faces]
            numbers = iter(numpy.fromfile(project.root / "Mesh" / name, dtype="<i4").tolist())
            self.assertEqual((next(numbers), next(numbers)), (1001, len(labels)))
            records = {label: sorted(next(numbers) for _ in range(next(numbers))) for label in labels}
            nodes = labels[::3]
            columns = read_rows(
                run("probe", project.file("box1_001.fzr"), project.file("box1.fzr"), "--node", *nodes).stdout
            )
            found = {label: set() for label in nodes}
            for label, kind, number in zip(*(columns[c] for c in ("Node label", "Element kind", "Element number"))):
                found[int(label)].add(int(number) + (faces if kind == "cell" else 0))
            self.assertEqual(
                {label: sorted(ids) for label, ids in found.items()}, {label: records[label] for label in nodes}, name
            )

    def test_rows_of_a_node(self):
        project = self.probed_box()
        label = int(((project.points == (6, 4, 2)).all(axis=1)).nonzero()[0][0]) + 1
        result = run("probe", project.root, "--node", label)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.check_rows(read_rows(result.stdout), label)
        by_place = run("probe", project.file("box1.fzr"), "--point", "6.1,4.1,2.3")
        self.assertEqual(by_place.stdout, result.stdout)
        self.assertIn(f"nearest surface node {label}, 0.33166 mm away", by_place.stderr)

    def test_polylines(self):
        project = self.probed_box()
        label = int(((project.points == (6, 4, 2)).all(axis=1)).nonzero()[0][0]) + 1
        result = run("probe", project.root, "--node", label, "--point", "4,4,0", "--out", project.root / "probe")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("probe.csv", result.stdout)
        columns = read_rows((project.root / "probe.csv").read_text())
        lines = VtkFile(project.root / "probe.vtp")
        self.assertEqual(lines.counts["NumberOfLines"], 2)
        numpy.testing.assert_array_equal(lines.cells["connectivity"], numpy.arange(len(lines.points)))
        for time in ("1", "2", "3"):
            rows = [i for i, text in enumerate(columns["Time [s]"]) if text == time]
            for column, array in (
                ("Depth [mm]", "Depth [mm]"),
                ("Node label", "Node label"),
                ("Temperature [°C]", f"Temperature, {time} s [°C]"),
                ("Frozen", f"Frozen, {time} s"),
            ):
                expected = numpy.array([columns[column][i] for i in rows], "f8")
                numpy.testing.assert_allclose(lines.arrays[array], expected, rtol=1e-6, atol=1e-6, err_msg=array)
        again = run("probe", project.root, "--node", label, "--out", project.root / "probe")
        self.assertEqual(again.returncode, 1)
        self.assertIn("is there already", again.stderr)

    def test_refusals(self):
        project = self.probed_box()
        for words, text in (
            ((), "nothing to probe"),
            (("--node", 88), "node 88 is not on the surface"),
            (("--node", 4000), "node 4000 is not on the surface"),
            (("--point", "1,2"), "is no point"),
            (("--point", "1,nan,2"), "is no point"),
        ):
            with self.subTest(words=words):
                result = run("probe", project.root, *words)
                self.assertEqual((result.returncode, result.stdout), (1, ""))
                self.assertIn(text, result.stderr)
        run("run", project.file("box1.k4w"))
        self.assertIn("no temperatures to probe", run("probe", project.file("box1.wzr"), "--node", 1).stderr)
        write_flow(project, 1, 1.0, project.temperature[:10])
        project.file("box1_001.k4f").write_bytes(b"\x89HDF\r\n\x1a\n broken")
        result = run("probe", project.root, "--node", 1)
        self.assertEqual(result.returncode, 1)
        self.assertIn("box1_001.k4f: the temperatures of this output time cannot be read", result.stderr)


if __name__ == "__main__":
    unittest.main()
