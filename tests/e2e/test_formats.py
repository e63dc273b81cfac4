"""frozenlayer import of files that VTK's own writers made (CGNS: of one made by hand): the stepped plate in each
format becomes the project that its .vtu series becomes."""
import shutil
import unittest

import h5py
import numpy

from cgns_file import write_cgns
from foreign_files import READERS_ARE_BUILT_IN, box, write_openfoam, write_pvd, write_vtu
from small_project import EXAMPLES, Folder, run, write_box_mesh
from test_import import items, mesh, time_of

try:
    import vtk
    from vtk.util.numpy_support import numpy_to_vtk, vtk_to_numpy
    from vtk.util.vtkAlgorithm import VTKPythonAlgorithmBase
except ImportError:
    vtk, VTKPythonAlgorithmBase = None, object

SERIES = EXAMPLES / "stepped-plate-vtu"
TIMES = {0: 0.5, 4: 5.0, 8: 11.4}  # file of the series -> s


class TimeSource(VTKPythonAlgorithmBase):
    """Gives one grid for each time."""

    def __init__(self, grids, times):
        super().__init__(nInputPorts=0, nOutputPorts=1, outputType="vtkUnstructuredGrid")
        self.grids, self.times = grids, times

    def RequestInformation(self, _request, _inputs, outputs):
        information, keys = outputs.GetInformationObject(0), vtk.vtkStreamingDemandDrivenPipeline
        information.Set(keys.TIME_STEPS(), self.times, len(self.times))
        information.Set(keys.TIME_RANGE(), [self.times[0], self.times[-1]], 2)
        return 1

    def RequestData(self, _request, _inputs, outputs):
        information, key = outputs.GetInformationObject(0), vtk.vtkStreamingDemandDrivenPipeline.UPDATE_TIME_STEP()
        seconds = information.Get(key) if information.Has(key) else self.times[0]
        grid = vtk.vtkUnstructuredGrid.GetData(outputs, 0)
        grid.ShallowCopy(self.grids[self.times.index(seconds)])
        grid.GetInformation().Set(vtk.vtkDataObject.DATA_TIME_STEP(), seconds)
        return 1


def project_facts(folder):
    """Points, cells and temperatures of a project with the points and cells in an order of their own."""
    path = next((folder / "Mesh").iterdir())
    grid = mesh(path)
    with h5py.File(path) as file:
        own = file.get("VTKHDF/PointData/NodeId")
        labels = numpy.arange(1, len(grid["Points"]) + 1) if own is None else own[()]
    order = numpy.lexsort(grid["Points"].T)
    place = numpy.empty_like(order)
    place[order] = numpy.arange(len(order))
    corners = [tuple(sorted(place[cell])) for cell in numpy.split(grid["Connectivity"], grid["Offsets"][1:-1])]
    results = sorted((folder / "Analysis/Run1").glob("*.k4f"), key=lambda name: time_of(name)[0])
    return (
        grid["Points"][order],
        sorted(corners),
        [time_of(name) for name in results],
        [items(name)[6][labels - 1][order] for name in results],
    )


@unittest.skipUnless(READERS_ARE_BUILT_IN and vtk, "needs VTK and python3-vtk9")
class FormatTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.grids = []
        for number in TIMES:
            reader = vtk.vtkXMLUnstructuredGridReader()
            reader.SetFileName(str(SERIES / f"b_{number:03d}.vtu"))
            reader.Update()
            grid = vtk.vtkUnstructuredGrid()
            grid.ShallowCopy(reader.GetOutput())
            grid.GetPointData().RemoveArray("NodeId")
            block = vtk.vtkIntArray()
            block.SetName("BlockId")
            block.SetNumberOfValues(grid.GetNumberOfCells())
            block.Fill(1)
            grid.GetCellData().AddArray(block)
            cls.grids.append(grid)

    def setUp(self):
        self.folder = Folder(self).path
        members = [(seconds, SERIES / f"b_{number:03d}.vtu") for number, seconds in TIMES.items()]
        write_pvd(self.folder / "reference.pvd", members)
        self.expected = self.bring_in(self.folder / "reference.pvd")

    def bring_in(self, *words):
        out = self.folder / "plate"
        result = run("import", *words, "--out", out, "--force", "--freeze-temperature", 130)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stderr, "")
        return project_facts(out)

    def check_same(self, *words):
        points, cells, times, temperatures = self.bring_in(*words)
        numpy.testing.assert_array_equal(points, self.expected[0])
        self.assertEqual(cells, self.expected[1])
        self.assertEqual(times, self.expected[2])
        numpy.testing.assert_array_equal(temperatures, self.expected[3])

    def write(self, writer, name, grid):
        writer.SetFileName(str(self.folder / name))
        writer.SetInputData(grid)
        self.assertEqual(writer.Write(), 1)
        return self.folder / name

    def write_all(self, make_writer, pattern):
        """One file for each time, and how the times are told."""
        names = [self.write(make_writer(), pattern.format(i), grid) for i, grid in enumerate(self.grids)]
        return [*names, "--times", ",".join(str(seconds) for seconds in TIMES.values())]

    def test_legacy(self):
        """Binary: the text form keeps six digits only."""

        def make():
            writer = vtk.vtkUnstructuredGridWriter()
            writer.SetFileTypeToBinary()
            return writer

        self.check_same(*self.write_all(make, "t{}.vtk"))

    def test_xml(self):
        for mode in ("SetDataModeToAscii", "SetDataModeToBinary", "SetDataModeToAppended"):

            def make(choose=mode):
                writer = vtk.vtkXMLUnstructuredGridWriter()
                getattr(writer, choose)()
                return writer

            with self.subTest(choice=mode):
                self.check_same(*self.write_all(make, "t{}.vtu"))

    def test_xml_blocks_are_joined(self):
        """Left and right half as two blocks, the points between them given twice."""

        def halves(grid):
            blocks = vtk.vtkMultiBlockDataSet()
            middle = numpy.array([grid.GetCell(i).GetBounds()[:2] for i in range(grid.GetNumberOfCells())]).mean(axis=1)
            for number, cells in enumerate((middle < 30.0, middle >= 30.0)):
                ids = vtk.vtkIdList()
                for cell in numpy.flatnonzero(cells):
                    ids.InsertNextId(int(cell))
                part = vtk.vtkExtractCells()
                part.SetInputData(grid)
                part.SetCellList(ids)
                part.Update()
                blocks.SetBlock(number, part.GetOutput())
            return blocks

        names = [
            self.write(vtk.vtkXMLMultiBlockDataWriter(), f"t{i}.vtm", halves(grid)) for i, grid in enumerate(self.grids)
        ]
        self.check_same(*names, "--times", ",".join(str(seconds) for seconds in TIMES.values()))

    def test_xml_pieces_are_joined(self):
        names = []
        for index, grid in enumerate(self.grids):
            writer = vtk.vtkXMLPUnstructuredGridWriter()
            writer.SetNumberOfPieces(1)
            writer.SetEndPiece(0)
            names.append(self.write(writer, f"t{index}.pvtu", grid))
            self.assertEqual(len(list(self.folder.rglob(f"t{index}_0.vtu"))), 1)
        self.check_same(*names, "--times", ",".join(str(seconds) for seconds in TIMES.values()))

    def test_xml_grids_without_lists_of_cells(self):
        """Images, rectilinear and curved grids become the hexahedra of the same box."""
        points, hexas = box()
        write_vtu(self.folder / "box.vtu", points, hexas, {"T": points[:, 2] + 129.0}, seconds=1.0)
        self.expected = self.bring_in(self.folder / "box.vtu")
        image, rectilinear, curved = vtk.vtkImageData(), vtk.vtkRectilinearGrid(), vtk.vtkStructuredGrid()
        image.SetSpacing(2.0, 2.0, 0.5)
        for axis, place in (
            (0, rectilinear.SetXCoordinates),
            (1, rectilinear.SetYCoordinates),
            (2, rectilinear.SetZCoordinates),
        ):
            place(numpy_to_vtk(numpy.unique(points[:, axis]), deep=True))
        places = vtk.vtkPoints()
        places.SetData(numpy_to_vtk(points, deep=True))
        curved.SetPoints(places)
        values = numpy_to_vtk(points[:, 2] + 129.0, deep=True)
        values.SetName("T")
        for name, grid, writer in (
            ("box.vti", image, vtk.vtkXMLImageDataWriter()),
            ("box.vtr", rectilinear, vtk.vtkXMLRectilinearGridWriter()),
            ("box.vts", curved, vtk.vtkXMLStructuredGridWriter()),
        ):
            with self.subTest(name=name):
                grid.SetDimensions(7, 5, 5)
                grid.GetPointData().AddArray(values)
                self.check_same(self.write(writer, name, grid), "--times", 1)

    def test_exodus(self):
        source = TimeSource(self.grids, list(TIMES.values()))
        writer = vtk.vtkExodusIIWriter()
        writer.SetInputConnection(source.GetOutputPort())
        writer.WriteAllTimeStepsOn()
        for name in ("plate.exo", "plate.e", "plate.ex2"):
            writer.SetFileName(str(self.folder / name))
            writer.Modified()
            writer.Write()
            with self.subTest(name=name):
                self.check_same(self.folder / name)

    def test_ensight(self):
        """The case file is made here: the writer tells numbers in place of the times."""
        for index, grid in enumerate(self.grids):
            writer = vtk.vtkEnSightWriter()
            writer.SetFileName(str(self.folder / "plate"))
            writer.SetInputData(grid)
            writer.SetTimeStep(index)
            writer.Write()
        case = self.folder / "plate.case"
        case.write_text(
            "FORMAT\ntype: ensight gold\n\nGEOMETRY\nmodel: plate.0.00000.geo\n\nVARIABLE\n"
            "scalar per node: 1 temperature plate.0.*****_n.temperature\n\nTIME\ntime set: 1\n"
            f"number of steps: {len(TIMES)}\nfilename start number: 00000\nfilename increment: 00001\n"
            f"time values: {' '.join(str(seconds) for seconds in TIMES.values())}\n"
        )
        self.check_same(case)

    def test_vtkhdf(self):
        """There is no writer in this VTK: the project's own mesh file, with temperatures."""
        source = next((self.folder / "plate/Mesh").iterdir()).read_bytes()
        names = []
        for index, grid in enumerate(self.grids):
            names.append(self.folder / f"t{index}.hdf")
            names[-1].write_bytes(source)
            with h5py.File(names[-1], "a") as file:
                file["VTKHDF/PointData/Temperature"] = vtk_to_numpy(grid.GetPointData().GetArray("temperature"))
        self.check_same(*names, "--times", ",".join(str(seconds) for seconds in TIMES.values()))

    def test_cgns(self):
        grid = self.grids[0]
        ends = vtk_to_numpy(grid.GetCells().GetOffsetsArray())
        cells = list(enumerate(numpy.split(vtk_to_numpy(grid.GetCells().GetConnectivityArray()), ends[1:-1])))
        path = self.folder / "plate.cgns"
        write_cgns(
            path,
            vtk_to_numpy(grid.GetPoints().GetData()),
            cells,
            list(TIMES.values()),
            "Temperature",
            [vtk_to_numpy(each.GetPointData().GetArray("temperature")) for each in self.grids],
        )
        self.check_same(path)


@unittest.skipUnless(READERS_ARE_BUILT_IN and vtk, "needs VTK and python3-vtk9")
class DamagedFileTest(unittest.TestCase):
    """Files that end too early are refused in one sentence, also where a library crashes over them, ends the program,
    or reads zeros."""

    def setUp(self):
        self.folder = Folder(self).path
        points, hexas = box()
        temperature = points[:, 2] + 129.0
        write_vtu(self.folder / "box.vtu", points, hexas, {"T": temperature}, seconds=1.0)
        reader = vtk.vtkXMLUnstructuredGridReader()
        reader.SetFileName(str(self.folder / "box.vtu"))
        for name, writer in (("box.exo", vtk.vtkExodusIIWriter()), ("box.vtk", vtk.vtkUnstructuredGridWriter())):
            writer.SetInputConnection(reader.GetOutputPort())
            writer.SetFileName(str(self.folder / name))
            if name == "box.vtk":
                writer.SetFileTypeToBinary()
            writer.Write()
        write_cgns(self.folder / "box.cgns", points, hexas, [1.0, 2.0], "T", [temperature, temperature])
        write_box_mesh(self.folder / "box.hdf", (12.0, 8.0, 2.0), (6, 4, 4))
        with h5py.File(self.folder / "box.hdf", "a") as file:
            file["VTKHDF/PointData/T"] = temperature

    def bring_in(self, path):
        return run("import", path, "--out", self.folder / "box", "--freeze-temperature", 130, "--times", 1)

    def test_files_that_end_too_early(self):
        for whole in sorted(self.folder.glob("box.*")):
            data = whole.read_bytes()
            for length in (0, 8, 100, len(data) // 4, len(data) // 2, len(data) - 50, len(data) - 1):
                if whole.suffix in (".vtu", ".vtk") and length == len(data) - 1:
                    continue  # lacks nothing but the end of its last line
                path = self.folder / ("cut" + whole.suffix)
                path.write_bytes(data[:length])
                with self.subTest(name=whole.name, length=length, whole=len(data)):
                    result = self.bring_in(path)
                    self.assertEqual(result.returncode, 1, result.stdout)
                    self.assertRegex(result.stderr, r"\Afrozenlayer: [^\n]*cut[^\n]*; [^\n]*\n\Z")
                    self.assertFalse((self.folder / "box").exists())

    def test_openfoam_files_that_end_too_early(self):
        points, hexas = box()
        case = write_openfoam(self.folder / "foam", points, hexas, [1, 2], [numpy.arange(float(len(hexas)))] * 2)
        for name in ("points", "faces", "owner", "neighbour", "boundary", "1/T", "2/T"):
            path = case.parent / (name if "/" in name else f"constant/polyMesh/{name}")
            data = path.read_bytes()
            for length in (len(data) // 2, None):
                with self.subTest(name=name, length=length):
                    path.unlink() if length is None else path.write_bytes(data[:length])
                    result = run("import", case, "--out", self.folder / "box", "--freeze-temperature", 130)
                    self.assertEqual(result.returncode, 1, result.stdout)
                    self.assertRegex(result.stderr, r"\Afrozenlayer: [^\n]*foam[^\n]*\n\Z")
                    path.write_bytes(data)

    def test_a_time_that_is_no_number(self):
        points, hexas = box()
        write_cgns(self.folder / "endless.cgns", points, hexas, [1.0, numpy.inf], "T", [points[:, 2]] * 2)
        result = run("import", self.folder / "endless.cgns", "--out", self.folder / "box", "--freeze-temperature", 130)
        self.assertEqual(result.returncode, 1)
        self.assertIn("endless.cgns tells a time that is no finite number; give the times with --times", result.stderr)

    def test_the_whole_files_are_taken(self):
        for name in ("box.vtu", "box.exo", "box.vtk", "box.hdf"):
            result = self.bring_in(self.folder / name)
            self.assertEqual((result.returncode, result.stderr), (0, ""), name)
            shutil.rmtree(self.folder / "box")


if __name__ == "__main__":
    unittest.main()
