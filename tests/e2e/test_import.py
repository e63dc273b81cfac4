"""frozenlayer import: projects from the files of other programs, and what it says of files it cannot use."""
import os
import unittest

import h5py
import numpy

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from small_project import EXAMPLES, MATERIAL, Folder, run, write_box_mesh


def items(path):
    with h5py.File(path) as file:
        return {int(key): file[f"items/{key}"][()].astype("f8") for key in file["items"]}


def item_name(path, item):
    with h5py.File(path) as file:
        name = file[f"items/{item}"].attrs["name"]
        return name.decode() if isinstance(name, bytes) else str(name)


def mesh(path):
    with h5py.File(path) as file:
        return {key: file["VTKHDF/" + key][()] for key in ("Points", "Connectivity", "Offsets", "Types")}


def time_of(path):
    with h5py.File(path) as file:
        return float(file["time"].attrs["value"]), int(file["time"].attrs["index"])


class ImportCase(unittest.TestCase):
    def setUp(self):
        self.folder = Folder(self).path
        self.points, self.hexas = foreign.box()
        self.depth = numpy.minimum(self.points[:, 2], 2.0 - self.points[:, 2])
        self.temperature = 60.0 + 120.0 * self.depth
        self.out = self.folder / "box"
        self.run_folder = self.out / "Analysis/Run1"

    def vtu(self, name="box.vtu", points=None, cells=None, point_data=None, **more):
        path = self.folder / name
        foreign.write_vtu(
            path,
            self.points if points is None else points,
            cells or self.hexas,
            {"temperature": self.temperature} if point_data is None else point_data,
            **more,
        )
        return path

    def bring_in(self, *words, material=("--freeze-temperature", 130)):
        result = run("import", *words, "--out", self.out, *material)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result

    def check_refused(self, words, *texts):
        result = run("import", *words, "--out", self.out, "--freeze-temperature", 130)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        for text in texts:
            self.assertIn(text, result.stderr)
        self.assertFalse(self.out.exists())
        self.assertFalse((self.folder / "box.part").exists())


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
class ImportTest(ImportCase):
    def test_complete_project(self):
        names = []
        for seconds in (3.0, 1.0, 2.0):
            names.append(
                self.vtu(f"t{seconds:g}.vtu", point_data={"temperature": self.temperature + seconds}, seconds=seconds)
            )
        result = self.bring_in(*names)
        for name, expected in (("box1_001.k4f", (1.0, 1)), ("box1_002.k4f", (2.0, 2)), ("box1.k4f", (3.0, 0))):
            self.assertEqual(time_of(self.run_folder / name), expected)
            numpy.testing.assert_array_equal(
                items(self.run_folder / name)[6], (self.temperature + expected[0]).astype("f4")
            )
        self.assertEqual((self.run_folder / "QNLIntermediateOutputTime.log").read_text(), "1 1\n2 2\n[EOF]\n")
        evaluated = run("run", self.out)
        self.assertEqual(evaluated.returncode, 0, evaluated.stderr)
        for text in (
            "175 nodes",
            "hexa",
            "temperature",
            "its name",
            "61",
            "183",
            "base time",
            "a density of 1 g/cm³ is assumed",
            f"Next: frozenlayer run {self.run_folder}/box1.k4f",
        ):
            self.assertIn(text, result.stdout)

    def test_one_time_has_no_marker_log(self):
        result = self.bring_in(self.vtu())
        self.assertFalse((self.run_folder / "QNLIntermediateOutputTime.log").exists())
        self.assertIn("does not tell its time", result.stderr)

    def test_both_orders_of_a_wedge_give_one_mesh(self):
        base = [(0, 0, 0), (4, 0, 0), (0, 4, 0)]
        points = numpy.array(base + [(x, y, 2.0) for x, y, _ in base], dtype="f8")
        written = []
        for name, order in (("up", [0, 1, 2, 3, 4, 5]), ("down", [3, 4, 5, 0, 1, 2])):
            self.out = self.folder / name
            self.bring_in(self.vtu("w.vtu", points, [(foreign.WEDGE, order)], {"T": numpy.full(6, 100.0)}))
            grid = mesh(self.out / f"Mesh/{name}.hdf")
            corners = grid["Points"][grid["Connectivity"]]
            normal = numpy.cross(corners[1] - corners[0], corners[2] - corners[0])
            self.assertLess(normal @ (corners[3] - corners[0]), 0.0)
            written.append(grid["Connectivity"].tolist())
        self.assertEqual(written[0], written[1])

    def test_units(self):
        path = self.vtu(points=self.points / 1000.0, point_data={"T": self.temperature + 273.15})
        self.bring_in(path, "--length-unit", "metre", "--temperature-unit", "kelvin")
        result = self.bring_in(path, "--length-unit", "m", "--temperature-unit", "K", "--force")
        self.assertEqual(result.stderr.count("Warning"), 1)
        numpy.testing.assert_allclose(mesh(self.out / "Mesh/box.hdf")["Points"], self.points, rtol=1e-14)
        numpy.testing.assert_allclose(items(self.run_folder / "box1.k4f")[6], self.temperature, rtol=1e-6)

    def test_unusual_ranges_are_told(self):
        path = self.vtu(points=self.points / 1000.0, point_data={"T": self.temperature + 300.0})
        result = self.bring_in(path)
        self.assertIn("add --length-unit m", result.stderr)
        self.assertIn("look like kelvin", result.stderr)
        cold = run(
            "import",
            self.vtu(point_data={"T": self.temperature / 10.0 + 300.0}),
            "--out",
            self.folder / "cold",
            "--freeze-temperature",
            130,
        )
        self.assertIn("look like kelvin", cold.stderr)

    def test_velocity_becomes_centimetres_per_second(self):
        velocity = numpy.outer(self.depth, [1.0, -2.0, 3.0])
        self.bring_in(self.vtu(point_data={"T": self.temperature, "U": velocity}))
        found = items(self.run_folder / "box1.k4f")
        for axis in range(3):
            numpy.testing.assert_allclose(found[11 + axis], velocity[:, axis] / 10.0, rtol=1e-6)

    def test_pressures_give_density_and_shrinkage(self):
        """The same pressure everywhere, as a number and as arrays of three units; then one that rises."""
        law = ("--material", EXAMPLES / "stepped-plate/Material/pp.toml")
        self.bring_in(self.vtu(), "--pressure", 25, material=law)
        expected = items(self.run_folder / "box1.k4f")
        rising = {
            "MPa": numpy.full(len(self.points), 25.0),
            "Pa": numpy.full(len(self.points), 25e6),
            "bar": numpy.full(len(self.points), 250.0),
        }
        for unit, pressure in rising.items():
            path = self.vtu(point_data={"T": self.temperature, "press": pressure})
            result = self.bring_in(path, "--force", "--pressure-array", "press", "--pressure-unit", unit, material=law)
            self.assertIn("computed: Tait law at the local pressure", result.stdout)
            found = items(self.run_folder / "box1.k4f")
            for item in (14, 17):
                numpy.testing.assert_allclose(found[item], expected[item], rtol=2e-7, err_msg=unit)
        path = self.vtu(point_data={"T": numpy.full(len(self.points), 100.0), "press": self.points[:, 0] - 1.0})
        self.bring_in(path, "--force", "--pressure-array", "press", material=law)
        density = items(self.run_folder / "box1.k4f")[17]
        levels = [density[self.points[:, 0] == x] for x in numpy.unique(self.points[:, 0])]
        self.assertTrue(all(numpy.ptp(level) == 0 for level in levels))
        self.assertTrue((numpy.diff([level[0] for level in levels]) > 0).all())

    def test_cooling_time_of_a_filling(self):
        self.bring_in(self.vtu(point_data={"T": self.temperature, "time to freeze": self.depth}))
        numpy.testing.assert_array_equal(items(self.run_folder / "box1.k4f")[16], self.depth.astype("f4"))
        done = run("run", self.out)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("cooling time", done.stdout)

    def test_warp_stage(self):
        shift = numpy.outer(self.depth, [0.1, 0.0, -0.2])
        self.bring_in(self.vtu(point_data={"U": shift}), "--stage", "warp")
        found = items(self.run_folder / "box1.k4w")
        self.assertEqual(sorted(found), [1, 2, 3])
        numpy.testing.assert_array_equal(found[3], shift[:, 2].astype("f4"))

    def test_regions(self):
        ids = numpy.array([7] * 90 + [2] * 4 + [4] * 2)
        path = self.vtu(cell_data={"CellEntityIds": ids})
        self.bring_in("--region-array", "CellEntityIds", "--runner", "2", "--special", "4,4", path)
        with h5py.File(self.out / "Mesh/box.hdf") as file:
            numpy.testing.assert_array_equal(file["VTKHDF/CellData/Region"][()], [0] * 90 + [1] * 4 + [2] * 2)

    def test_named_regions_are_chosen(self):
        """A mould of one box around nothing, beside the part: only the part is read."""
        self.vtu("part.vtu")
        self.vtu("mould.vtu", self.points + numpy.array([0.0, 0.0, 2.0]), point_data={"temperature": self.temperature})
        path = self.folder / "case.vtm"
        path.write_text(
            '<VTKFile type="vtkMultiBlockDataSet" version="1.0" byte_order="LittleEndian"><vtkMultiBlockDataSet>'
            '<DataSet index="0" name="mould" file="mould.vtu"/><DataSet index="1" name="part" file="part.vtu"/>'
            "</vtkMultiBlockDataSet></VTKFile>"
        )
        self.check_refused([path], 'has several regions, "mould" (96 cells), "part" (96 cells)', "--part", "--ignore")
        self.check_refused([path, "--part", "parts"], 'no region "parts" of --part')
        for words in (("--part", "part"), ("--ignore", "mould")):
            self.bring_in(path, *words, "--force")
            read = mesh(self.out / "Mesh/box.hdf")["Points"]
            self.assertEqual(sorted(map(tuple, read)), sorted(map(tuple, self.points)))
        self.bring_in(path, "--part", "part,mould", "--force")
        self.assertEqual(len(mesh(self.out / "Mesh/box.hdf")["Types"]), 192)

    def test_doubtful_temperatures_are_told_last(self):
        """Behind all tables, of import and of show."""
        told = self.bring_in(self.vtu(), material=("--freeze-temperature", 40))
        self.assertRegex(
            told.stderr, r"Warning: temperatures from 60 to 180 °C are all above the freeze temperature, 40"
        )
        shown = run("show", self.vtu(), "--freeze-temperature", 40, "--out", self.folder / "page.html")
        self.assertEqual(shown.returncode, 0, shown.stderr)
        self.assertIn("all above the freeze temperature", shown.stderr.splitlines()[-1])

    def test_markers_are_no_temperatures(self):
        marked = numpy.where(numpy.arange(len(self.points)) < 3, 1e20, self.temperature)
        path = self.vtu(point_data={"temperature": marked})
        self.check_refused([path], "no temperature at 3 nodes, the first 1e+20", "--allow-missing")

    def test_wall_sets_the_tolerance(self):
        self.bring_in(self.vtu(), "--wall", 3)
        with h5py.File(self.out / "Mesh/box.hdf") as file:
            self.assertEqual(file["VTKHDF/FieldData/GeomTolerance"][()].tolist(), [1.5])

    def test_cell_values_are_carried_to_the_nodes(self):
        """Middles at 2.5 and 12.5 mm, 10 K a mm; what goes on to the surface is told."""
        points = numpy.array([(x, y, z) for x in (0.0, 1.0, 4.0) for y in (0.0, 1.0) for z in (0.0, 1.0)]) * 5.0
        hexa = lambda a: (foreign.HEXA, [a, a + 4, a + 6, a + 2, a + 1, a + 5, a + 7, a + 3])
        told = self.bring_in(
            self.vtu("c.vtu", points, [hexa(0), hexa(4)], {}, cell_data={"T": numpy.array([100.0, 200.0])})
        )
        numpy.testing.assert_allclose(items(self.run_folder / "box1.k4f")[6], [75.0] * 4 + [125.0] * 4 + [275.0] * 4)
        self.assertIn("none at the walls", told.stderr)

    def test_quadratic_cells_become_linear(self):
        corners = numpy.array([(0, 0, 0), (9, 0, 0), (0, 9, 0), (0, 0, 9)], dtype="f8")
        edges = [(0, 1), (1, 2), (0, 2), (0, 3), (1, 3), (2, 3)]
        points = numpy.vstack([corners, [(corners[a] + corners[b]) / 2 for a, b in edges]])
        labels = numpy.arange(11, 21, dtype="i4")
        result = self.bring_in(
            self.vtu(
                "q.vtu",
                points,
                [(foreign.QUADRATIC_TETRA, range(10))],
                {"T": numpy.arange(10) + 80.0, "NodeId": labels},
            )
        )
        self.assertIn("1 quadratic cell made linear", result.stdout)
        grid = mesh(self.out / "Mesh/box.hdf")
        numpy.testing.assert_array_equal(grid["Points"], corners)
        self.assertEqual(items(self.run_folder / "box1.k4f")[6].tolist(), [0.0] * 10 + [80.0, 81.0, 82.0, 83.0])

    def test_few_missing_values_are_filled(self):
        self.temperature[40] = numpy.nan
        path = self.vtu()
        self.check_refused([path], '1 value of "temperature"', "--allow-missing")
        result = self.bring_in(path, "--allow-missing", 1)
        self.assertIn("filled from their neighbours", result.stderr)
        found = items(self.run_folder / "box1.k4f")[6]
        self.assertTrue(60.0 <= found[40] <= 180.0)

    def test_existing_folders(self):
        path = self.vtu()
        self.bring_in(path)
        again = run("import", path, "--out", self.out, "--freeze-temperature", 130)
        self.assertEqual(again.returncode, 1)
        self.assertIn("--force", again.stderr)
        self.bring_in(path, "--force", "--stage", "cool")
        self.assertEqual([p.name for p in sorted(self.run_folder.iterdir())], ["box1.k4c", "box1.run"])
        (self.out / "notes.txt").write_text("mine")
        kept = run("import", path, "--out", self.out, "--freeze-temperature", 130, "--force")
        self.assertEqual(kept.returncode, 1)
        self.assertIn("holds other files", kept.stderr)
        self.assertEqual((self.out / "notes.txt").read_text(), "mine")

    def test_other_formats(self):
        times = [0.5, 2.0]
        arrays = [self.temperature, self.temperature - 10.0]
        legacy = self.folder / "box.vtk"
        foreign.write_legacy(
            legacy, self.points, self.hexas, {"Temp": arrays[1]}, {"CellEntityIds": numpy.ones(len(self.hexas))}
        )
        ensight = self.folder / "box.case"
        foreign.write_ensight(ensight, self.points, self.hexas, times, arrays)
        own = self.folder / "own.hdf"
        write_box_mesh(own, (12.0, 8.0, 2.0), (6, 4, 4))
        with h5py.File(own, "a") as file:
            file["VTKHDF/PointData/Temperature"] = arrays[1]
        for path, count in ((legacy, 1), (ensight, 2), (own, 1)):
            with self.subTest(path=path.name):
                self.bring_in(path, "--force")
                self.assertEqual(len(list(self.run_folder.glob("*.k4f"))), count)
                numpy.testing.assert_allclose(items(self.run_folder / "box1.k4f")[6], arrays[1], rtol=1e-5)

    def test_openfoam_case(self):
        """T on cells, kelvin and metres: a uniform value stays, a linear one is met inside the box."""
        middle = numpy.array([self.points[nodes].mean(axis=0) for _, nodes in self.hexas])
        case = foreign.write_openfoam(
            self.folder / "foam",
            self.points / 1000.0,
            self.hexas,
            [1, 2],
            [numpy.full(len(middle), 400.0), 400.0 + 5.0 * middle[:, 0]],
        )
        self.bring_in(case, "--length-unit", "m", "--temperature-unit", "K")
        self.assertEqual(time_of(self.run_folder / "box1_001.k4f"), (1.0, 1))
        numpy.testing.assert_allclose(items(self.run_folder / "box1_001.k4f")[6], 126.85, rtol=1e-6)
        with h5py.File(self.out / "Mesh/box.hdf") as file:
            points = file["VTKHDF/Points"][()]
        inside = (points[:, 0] > 0.1) & (points[:, 0] < 11.9)
        numpy.testing.assert_allclose(
            items(self.run_folder / "box1.k4f")[6][inside], 126.85 + 5.0 * points[inside, 0], rtol=1e-5
        )

    def test_openfoam_walls(self):
        """Walls held at 323.15 K around cells of 503.15 K; metres and kelvin are those of the format."""
        case = foreign.write_openfoam(
            self.folder / "foam",
            self.points / 1000.0,
            self.hexas,
            [1],
            [numpy.full(len(self.hexas), 503.15)],
            "type fixedValue; value uniform 323.15;",
        )
        told = self.bring_in(case)
        self.assertRegex(told.stdout, r"temperature +T +cells and boundary")
        self.assertNotIn("none at the walls", told.stderr)
        with h5py.File(self.out / "Mesh/box.hdf") as file:
            points = file["VTKHDF/Points"][()]
        numpy.testing.assert_allclose(points.max(axis=0), self.points.max(axis=0), rtol=1e-6)
        outer = ((points < 1e-6) | (points > points.max(axis=0) - 1e-6)).any(axis=1)
        temperature = items(self.run_folder / "box1.k4f")[6]
        numpy.testing.assert_allclose(temperature[outer], 50.0, rtol=1e-6)
        self.assertGreater((~outer).sum(), 10)
        numpy.testing.assert_allclose(temperature[~outer], 230.0, rtol=1e-6)


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
class RefusalTest(ImportCase):
    def test_arrays(self):
        path = self.vtu(
            point_data={
                "Tmp_1": self.temperature,
                "pressure": self.temperature,
                "flux": numpy.zeros((len(self.points), 3)),
            }
        )
        self.check_refused([path, "--temperature", "Tmp"], 'no array "Tmp"', "there: Tmp_1 (1 component, points)")
        self.check_refused([path, "--temperature", "flux"], "has 3 components, but a temperature has 1")
        self.check_refused([path], "name it with --temperature", "pressure")
        self.check_refused([path, "--temperature", "Tmp_1", "--region-array", "body"], 'no cell array "body"')

    def test_regions(self):
        path = self.vtu(cell_data={"body": numpy.ones(len(self.hexas))})
        words = [path, "--region-array", "body", "--runner"]
        self.check_refused([*words, "2"], 'region 2 of --runner is not in array "body"; there are 1')
        self.check_refused([*words, "1"], "no cell is left for the part")

    def test_meshes(self):
        triangle = [(foreign.TRIANGLE, [0, 1, 7])]
        self.check_refused([self.vtu(cells=triangle)], "this is a surface mesh")
        flat = [(foreign.TETRA, [0, 1, 2, 7])]
        self.check_refused([self.vtu(cells=flat)], "repair the mesh")
        twice = [(foreign.TETRA, [0, 1, 1, 40])]
        self.check_refused([self.vtu(cells=twice)], "cell 1 lacks a corner, names one twice")
        prism = [(16, [0, 1, 2, 3, 4, 5, 40, 41, 42, 43, 44, 45])]
        self.check_refused([self.vtu(cells=prism)], "1 cells of VTK type 16")

    def test_polyhedra_are_counted(self):
        path = self.vtu(cells=[(foreign.POLYHEDRON, [0, 1, 7, 35])])
        faces = numpy.array([4, 3, 0, 1, 7, 3, 0, 1, 35, 3, 1, 7, 35, 3, 0, 7, 35])
        path.write_text(
            path.read_text().replace(
                "</Cells>",
                foreign.array_text("faces", faces) + foreign.array_text("faceoffsets", numpy.array([17])) + "</Cells>",
            )
        )
        self.check_refused([path], "holds 1 polyhedra; split them into tetrahedra")

    def test_coordinates_and_values_that_are_no_numbers(self):
        points = self.points.copy()
        points[3, 1] = numpy.nan
        self.check_refused([self.vtu(points=points)], "point 4 has a coordinate that is not finite")
        self.temperature[:20] = numpy.nan
        self.check_refused([self.vtu()], '20 values of "temperature" (11.429 % of the nodes) not a number')

    def test_series(self):
        first, moved = self.vtu("a.vtu"), self.vtu("b.vtu", points=self.points + 1.0)
        self.check_refused([first, moved], "b.vtu has another mesh than", "a.vtu")
        same = self.vtu("c.vtu")
        self.check_refused([first, same, "--times", "1"], "--times gives 1, but there are 2 output times")
        self.check_refused([first, same, "--times", "2,2"], "have the same time, 2 s")
        other = self.vtu("d.vtu", point_data={"heat": self.temperature})
        self.check_refused([first, other], 'd.vtu holds no array "temperature" as')
        timed = self.vtu("e.vtu", seconds=4.0)
        self.check_refused([first, timed], "only 1 of 2 files tell their time")

    def test_files(self):
        self.check_refused([self.folder / "none.vtu"], "none.vtu is missing")
        (self.folder / "a.msh").write_text("$MeshFormat\n")
        self.check_refused([self.folder / "a.msh"], "a.msh, line 1: expected version, form")
        broken = self.vtu()
        broken.write_text(broken.read_text()[:3000])
        self.check_refused([broken], "box.vtu")
        for name in ("x.vtu", "x.vtk", "x.hdf", "x.case", "x.cgns", "x.exo", "x.pvd"):
            with self.subTest(name=name):
                (self.folder / name).write_text("hello\n")
                self.check_refused([self.folder / name], name)
        with h5py.File(self.folder / "y.hdf", "w") as file:
            file["a"] = 1
        self.check_refused([self.folder / "y.hdf"], "y.hdf cannot be read (its reader failed)")
        foreign.write_pvd(self.folder / "gone.pvd", [(1.0, "gone.vtu")])
        self.check_refused([self.folder / "gone.pvd"], "gone.vtu is missing")

    def test_lists_and_sizes(self):
        foreign.write_pvd(self.folder / "a.pvd", [(1.0, "b.pvd")])
        (self.folder / "b.pvd").write_text("")
        self.check_refused([self.folder / "a.pvd"], "a.pvd lists another list", "list the files with the meshes")
        huge = self.vtu("huge.vtu")
        huge.write_text(huge.read_text().replace('NumberOfPoints="175"', 'NumberOfPoints="100000000000000"'))
        self.check_refused([huge], "huge.vtu asks for more memory than there is")
        negative = self.vtu("negative.vtu")
        negative.write_text(negative.read_text().replace('NumberOfCells="96"', 'NumberOfCells="-5"'))
        self.check_refused([negative], "negative.vtu cannot be read", "export it anew")

    def test_numbers_of_options(self):
        path = self.vtu()
        for option, values in (
            ("--wall", ("nan", "inf", "0", "-1")),
            ("--pressure", ("nan", "inf", "-1")),
            ("--times", ("nan", "inf", "1,x")),
            ("--allow-missing", ("nan", "101", "-1")),
        ):
            for value in values:
                with self.subTest(option=option, value=value):
                    self.check_refused([path, f"{option}={value}"], option, " is no number from ")
        for value in ("nan", "inf", "-274"):
            refused = run("import", path, "--out", self.out, f"--freeze-temperature={value}")
            self.assertEqual((refused.returncode, refused.stderr.count("\n")), (1, 1))
            self.assertIn("--freeze-temperature", refused.stderr)
        empty = run("import", path, "--out", "", "--freeze-temperature", 130)
        self.assertEqual(empty.returncode, 1)
        self.assertIn("the name of the project folder is empty", empty.stderr)

    def test_material_and_space(self):
        path = self.vtu()
        bare = run("import", path, "--out", self.out)
        self.assertEqual(bare.returncode, 1)
        self.assertIn("--material FILE or --freeze-temperature DEGC", bare.stderr)
        bad = self.folder / "bad.toml"
        bad.write_text(MATERIAL.replace("freeze_temperature = 130.0\n", ""))
        refused = run("import", path, "--out", self.out, "--material", bad)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("bad.toml", refused.stderr)
        self.assertFalse(self.out.exists())
        (self.folder / "file").write_text("")
        self.out = self.folder / "file/box"
        self.check_refused([path], "cannot be written")

    @unittest.skipIf(os.name != "posix", "limits the size of files")
    def test_full_disk_leaves_nothing(self):
        import resource

        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (2048, 2048))
        result = run(
            "import",
            self.vtu(),
            "--out",
            self.out,
            "--freeze-temperature",
            130,
            preexec_fn=limit,
            restore_signals=False,
        )
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertIn("box.part/Mesh/box.hdf", result.stderr)
        self.assertFalse(self.out.exists())


@unittest.skipIf(READERS_ARE_BUILT_IN, "built with VTK")
class WithoutReadersTest(ImportCase):
    def test_what_to_install(self):
        self.check_refused([self.vtu()], "apt-get install libvtk9-dev")


if __name__ == "__main__":
    unittest.main()
