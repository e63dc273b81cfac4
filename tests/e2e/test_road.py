"""The whole road, import, run, export and view: the stepped plate as a series of files against its ready-made
project, and a case that OpenFOAM solves here."""
import os
import shutil
import subprocess
import unittest

import h5py
import numpy

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from result_page import ResultPage
from small_project import EXAMPLES, FROZENLAYER, Folder, run
from test_import import item_name, items, mesh, time_of
from vtk_xml import VtkFile, read_collection

ROAD = EXAMPLES / "stepped-plate-vtu/road.sh"
TIMES = [0.5, 1.0, 2.0, 3.0, 5.0, 7.0, 8.5, 10.0, 11.4]
# Frozen ratio, temperatures and velocities: what does not follow from density and shrinkage.
FROM_TEMPERATURE = (1, 2, 3, 4, 5, 17, 18, 19)


def stage_names(extension):
    """By time, the base time last."""
    return [f"plate1_{i:03d}{extension}" for i in range(1, len(TIMES))] + ["plate1" + extension]


@unittest.skipUnless(READERS_ARE_BUILT_IN and shutil.which("bash"), "needs VTK and bash")
class SteppedPlateTest(unittest.TestCase):
    def setUp(self):
        self.folder = Folder(self).path
        self.ready = Folder(self).copy_example("stepped-plate")
        self.out = self.folder / "out"

    def take_road(self, *words):
        done = subprocess.run(
            [str(ROAD), str(self.out), *map(str, words)],
            capture_output=True,
            encoding="utf-8",
            timeout=300,
            env={**os.environ, "FROZENLAYER": FROZENLAYER},
            check=False,
        )
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(run("run", self.ready).returncode, 0)

    def pairs(self, extension):
        return [
            (self.ready / "Analysis/Run1" / name, self.out / "plate/Analysis/Run1" / name)
            for name in stage_names(extension)
        ]

    def check_inputs(self):
        """Temperatures are the same float32 numbers; density and shrinkage were computed elsewhere, in the same
        precision: a few units in the last place (0.9 g/cm3: 6e-8, 17 %: 1.9e-6)."""
        for (ready, ours), seconds in zip(self.pairs(".k4f"), TIMES):
            self.assertEqual(time_of(ours), time_of(ready))
            self.assertAlmostEqual(time_of(ours)[0], seconds, places=6)
            expected, found = items(ready), items(ours)
            self.assertEqual(sorted(found), sorted(expected))
            for item, tolerance in ((6, 0.0), (11, 0.0), (12, 0.0), (13, 0.0), (14, 4e-6), (17, 1.3e-7)):
                self.assertLessEqual(numpy.abs(found[item] - expected[item]).max(), tolerance, (ours.name, item))
            self.assertEqual(item_name(ours, 17), "Density (computed: Tait law at 10 MPa)")

    def check_what_people_see(self):
        """The surface files hold the results as they are, and the page their times and ranges."""
        self.assertEqual(
            read_collection(self.out / "surface.pvd"),
            [(seconds, f"surface_{i:04d}.vtp") for i, seconds in enumerate(TIMES, 1)],
        )
        page = ResultPage(self.out / "plate.html")
        self.assertEqual(page.header["times"], TIMES)
        shown = page.item_values(page.item("Frozen ratio"))
        by_label = numpy.argsort(page.labels())
        for place, (_, ours) in enumerate(self.pairs(".fzr")):
            frame = VtkFile(self.out / f"surface_{place + 1:04d}.vtp")
            with h5py.File(ours) as file:
                numpy.testing.assert_array_equal(frame.arrays["Node label"], file["node_ids"][()])
                numpy.testing.assert_array_equal(frame.arrays["Frozen ratio [%]"], file["items/1"][()])
            numpy.testing.assert_array_equal(page.labels()[by_label], frame.arrays["Node label"])
            # The page rounds an item's range to 65,527 steps.
            difference = numpy.abs(shown[place][0][by_label] - frame.arrays["Frozen ratio [%]"])
            self.assertLessEqual(difference.max(), 100 / 65527)

    def test_series_gives_the_ready_made_project(self):
        """The points of the series are float32, those of the project float64: rays along cell edges meet other
        cells. Equal nodes, and per item a mean difference below 0.2 % of its range."""
        self.take_road()
        self.check_inputs()
        self.check_what_people_see()
        for ready, ours in self.pairs(".fzr"):
            expected, found = items(ready), items(ours)
            self.assertEqual(sorted(found), sorted(expected))
            with h5py.File(ready) as a, h5py.File(ours) as b:
                numpy.testing.assert_array_equal(a["node_ids"][()], b["node_ids"][()])
            for item, values in expected.items():
                mean = numpy.abs(found[item] - values).mean()
                self.assertLessEqual(mean, 2e-3 * (values.max() - values.min()), (ours.name, item))

    def test_points_of_double_precision_give_equal_results(self):
        """With the points of the project itself the results are equal to the bit, but for what follows from the
        computed density and shrinkage: these differ by units in the last place of float32, and the results by no
        more than 2e-5 of their range."""
        grid = mesh(self.ready / "Mesh/plate.hdf")
        ends = grid["Offsets"]
        cells = [(int(kind), grid["Connectivity"][a:b]) for kind, a, b in zip(grid["Types"], ends, ends[1:])]
        members = []
        for name, seconds in zip(stage_names(".k4f"), TIMES):
            foreign.write_vtu(
                self.folder / (name + ".vtu"),
                grid["Points"],
                cells,
                {"T": items(self.ready / "Analysis/Run1" / name)[6].astype("f4")},
            )
            members.append((seconds, name + ".vtu"))
        foreign.write_pvd(self.folder / "double.pvd", members)
        self.take_road(self.folder / "double.pvd")
        self.check_inputs()
        for ready, ours in self.pairs(".fzr"):
            expected, found = items(ready), items(ours)
            for item, values in expected.items():
                if item in FROM_TEMPERATURE:
                    numpy.testing.assert_array_equal(found[item], values, f"{ours.name} item {item}")
                else:
                    span = values.max() - values.min()
                    self.assertLessEqual(numpy.abs(found[item] - values).max(), 2e-5 * span, (ours.name, item))


def slab_temperature(depth, fourier):
    """Share of the temperature difference that is left in a slab; `depth` as share of its thickness."""
    k = (2 * numpy.arange(200) + 1) * numpy.pi
    return (4 / k * numpy.sin(numpy.outer(depth, k)) * numpy.exp(-k * k * fourier)).sum(axis=1)


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
@unittest.skipUnless(
    shutil.which("blockMesh") and shutil.which("laplacianFoam"),
    "OpenFOAM is not here: tools/install_packages.sh openfoam",
)
class OpenFoamTest(unittest.TestCase):
    SIZE, SECONDS, DIFFUSIVITY = (20, 12, 3), 8, 8.24e-8

    def solve(self, folder):
        case = foreign.write_cooling_case(folder, self.SIZE, (20, 12, 24), self.SECONDS, self.DIFFUSIVITY)
        settings = {"WM_PROJECT_DIR": "/usr/share/openfoam", **os.environ}
        for program in ("blockMesh", "laplacianFoam"):
            done = subprocess.run(
                [program], cwd=folder, env=settings, capture_output=True, encoding="utf-8", timeout=60, check=False
            )
            self.assertEqual(done.returncode, 0, done.stdout[-2000:] + done.stderr)
        return case

    def go(self, *words):
        result = run(*words)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def check_nodes(self, project):
        """Nodes on the walls have the wall's temperature, those inside the series' within 1.7 % of the range: what the
        solver leaves at 1 s, with the front three cells thick."""
        with h5py.File(project / "Mesh/slab.hdf") as file:
            x, y, z = file["VTKHDF/Points"][()].T
        middle = (abs(x - 10) < 6) & (abs(y - 6) < 2)
        wall = (z < 1e-6) | (z > self.SIZE[2] - 1e-6)
        for seconds in range(1, self.SECONDS + 1):
            index = "" if seconds == self.SECONDS else f"_{seconds + 1:03d}"
            temperature = items(project / f"Analysis/Run1/slab1{index}.k4f")[6]
            fourier = 1e6 * self.DIFFUSIVITY * seconds / self.SIZE[2] ** 2
            exact = 50.0 + 180.0 * slab_temperature(z / self.SIZE[2], fourier)
            numpy.testing.assert_allclose(temperature[wall], 50.0, rtol=1e-6)
            self.assertLess(numpy.abs(temperature - exact)[middle & ~wall].max(), 3.0, seconds)

    def test_box_that_cools(self):
        """Away from the rim it is a slab, and the solution known: 16 to 51 % frozen, the centre at 230 to 161 degC.
        The mesh has 24 cells over the wall; half a cell would be 2 points of frozen ratio."""
        folder = Folder(self).path
        case = self.solve(folder / "foam")
        told = self.go("import", case, "--out", folder / "slab", "--freeze-temperature", 130)
        self.assertIn("cells and boundary", told)
        self.check_nodes(folder / "slab")
        self.go("run", folder / "slab")
        self.go("export", folder / "slab", "--out", folder / "surface")
        self.go("view", folder / "slab", "--out", folder / "page.html")
        entries = read_collection(folder / "surface.pvd")
        self.assertEqual([seconds for seconds, _ in entries], list(range(self.SECONDS + 1)))
        self.assertEqual(ResultPage(folder / "page.html").header["times"], list(range(self.SECONDS + 1)))
        depth = numpy.linspace(0.0, 1.0, 6001)
        for seconds, name in entries[1:]:
            fourier = 1e6 * self.DIFFUSIVITY * seconds / self.SIZE[2] ** 2
            frozen = 100.0 * (slab_temperature(depth, fourier) < 80 / 180).mean()
            centre = 50.0 + 180.0 * slab_temperature([0.5], fourier)[0]
            frame = VtkFile(folder / name)
            x, y, z = frame.points.T
            inside = (abs(x - 10) < 6) & (abs(y - 6) < 2) & (z < 1e-6)
            self.assertGreater(inside.sum(), 30)
            self.assertLess(numpy.abs(frame.arrays["Frozen ratio [%]"][inside] - frozen).max(), 0.6, seconds)
            self.assertLess(numpy.abs(frame.arrays["Centre temperature [°C]"][inside] - centre).max(), 1.0, seconds)


if __name__ == "__main__":
    unittest.main()
