"""Named regions of files that hold a part and its mould: the part is chosen, and a file without a choice refused."""
import os
import pathlib
import shutil
import subprocess
import unittest

import h5py
import numpy

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from small_project import Folder, run
from test_import import ImportCase, items, mesh

try:
    import vtk
except ImportError:
    vtk = None

OPENFOAM = pathlib.Path("/usr/share/openfoam")
TUTORIAL = pathlib.Path(
    "/usr/share/doc/openfoam-examples/examples/heatTransfer/chtMultiRegionFoam/externalCoupledHeater"
)
OF_OPENFOAM = ("blockMesh", "topoSet", "splitMeshRegions", "changeDictionary")


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
class RegionTest(ImportCase):
    """Two boxes on each other, "lid" from z = 0 and "mould" from z = 2, whose temperatures differ by 20 degC."""

    def setUp(self):
        super().setUp()
        self.shift = numpy.array([0.0, 0.0, 2.0])

    def check_choice(self, path, *words):
        self.check_refused([path, *words], 'has several regions, "lid" (96 cells), "mould" (96 cells)', "--part")
        self.check_refused([path, *words, "--part", "Lid"], 'no region "Lid" of --part; there are "lid" (96 cells)')
        self.check_refused([path, *words, "--ignore", "lid,mould"], "leave no cell")
        for choice, lifted in ((("--part", "lid"), False), (("--ignore", "mould"), False), (("--part", "mould"), True)):
            with self.subTest(choice=choice):
                self.bring_in(path, *words, *choice, "--force")
                expected = self.points + lifted * self.shift
                read = mesh(self.out / "Mesh/box.hdf")["Points"]
                place = numpy.lexsort(read.T)
                numpy.testing.assert_array_equal(read[place], expected[numpy.lexsort(expected.T)])
                temperature = (self.temperature + lifted * 20.0)[numpy.lexsort(expected.T)]
                found = items(self.run_folder / "box1.k4f")[6][place]
                numpy.testing.assert_allclose(found, temperature, rtol=1e-5)

    def test_ensight(self):
        """The text form keeps six digits."""
        path = self.folder / "two.case"
        foreign.write_ensight(path, self.points, self.hexas, [1.0], [self.temperature])
        geometry, values = path.with_suffix(".geo"), path.with_suffix(".t00")
        second = self.folder / "second.case"
        foreign.write_ensight(second, self.points + self.shift, self.hexas, [1.0], [self.temperature + 20.0])
        for file, name, head in ((geometry, "geo", 4), (values, "t00", 1)):
            lines = second.with_suffix(f".{name}").read_text().splitlines()[head:]
            lines[1] = "         2"
            file.write_text(file.read_text() + "\n".join(lines) + "\n")
        text = geometry.read_text()
        begin = text.index("\nsolid\n")
        geometry.write_text(text[:begin] + "\nlid\n" + text[begin + 7 :].replace("\nsolid\n", "\nmould\n"))
        self.check_choice(path)

    @unittest.skipUnless(vtk, "needs python3-vtk9")
    def test_exodus(self):
        """Element blocks with names, as VTK's own writer makes them."""
        blocks = vtk.vtkMultiBlockDataSet()
        for number, (name, lifted) in enumerate((("lid", 0), ("mould", 1))):
            self.vtu(
                f"{name}.vtu",
                self.points + lifted * self.shift,
                point_data={"temperature": self.temperature + lifted * 20.0},
            )
            reader = vtk.vtkXMLUnstructuredGridReader()
            reader.SetFileName(str(self.folder / f"{name}.vtu"))
            reader.Update()
            blocks.SetBlock(number, reader.GetOutput())
            blocks.GetMetaData(number).Set(vtk.vtkCompositeDataSet.NAME(), name)
        writer = vtk.vtkExodusIIWriter()
        writer.SetFileName(str(self.folder / "two.exo"))
        writer.SetInputData(blocks)
        writer.Write()
        self.check_choice(self.folder / "two.exo", "--times", 1)


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
@unittest.skipUnless(TUTORIAL.is_dir() and all(map(shutil.which, OF_OPENFOAM)), "OpenFOAM or its examples are missing")
class OpenFoamRegionTest(unittest.TestCase):
    """A tutorial case of a heater between solids, water and air, split into its regions."""

    def solve(self, *words):
        done = subprocess.run(
            words,
            cwd=self.case,
            env={"WM_PROJECT_DIR": str(OPENFOAM), **os.environ},
            capture_output=True,
            text=True,
            timeout=300,
            check=False,
        )
        self.assertEqual(done.returncode, 0, done.stdout[-2000:] + done.stderr)

    def test_regions_of_a_tutorial(self):
        self.case = Folder(self).path / "heater"
        shutil.copytree(TUTORIAL, self.case)
        shutil.copytree(self.case / "0.orig", self.case / "0")
        for words in (("blockMesh",), ("topoSet",), ("splitMeshRegions", "-cellZones", "-overwrite")):
            self.solve(*words)
        for region in ("heater", "leftSolid"):
            self.solve("changeDictionary", "-region", region)
        foam = self.case / "case.foam"
        foam.write_text("")
        out = self.case.parent / "part"

        def bring_in(*words):
            return run("import", foam, "--out", out, "--force", "--freeze-temperature", 20, *words)

        refused = bring_in()
        self.assertEqual(refused.returncode, 1, refused.stdout)
        for region in ("bottomWater", "heater", "leftSolid", "rightSolid", "topAir"):
            self.assertRegex(refused.stderr, rf'"{region}" \(\d+ cells\)')
        self.assertIn("say which are the part with --part NAME", refused.stderr)
        sizes = {}
        for region in ("heater", "leftSolid", "heater,leftSolid"):
            taken = bring_in("--part", region)
            self.assertEqual(taken.returncode, 0, taken.stderr)
            with h5py.File(out / "Mesh/part.hdf") as file:
                sizes[region] = len(file["VTKHDF/Types"][()])
        for region in ("heater", "leftSolid"):
            self.assertIn(f'"{region}" ({sizes[region]} cells)', refused.stderr)
        self.assertEqual(sizes["heater,leftSolid"], sizes["heater"] + sizes["leftSolid"])
        bring_in("--part", "heater")
        # 300 K, and 500 K on the side that is held; on patches of the air beside it stands 0 K.
        temperatures = items(out / "Analysis/Run1/part1.k4f")[6]
        held = temperatures > 100.0
        self.assertTrue(0 < held.sum() < len(temperatures) / 2)
        numpy.testing.assert_allclose(temperatures[held], 500.0 - 273.15, atol=1e-4)
        numpy.testing.assert_allclose(temperatures[~held], 300.0 - 273.15, atol=1e-4)
        self.assertIn('no region "lid" of --part', bring_in("--part", "lid").stderr)


if __name__ == "__main__":
    unittest.main()
