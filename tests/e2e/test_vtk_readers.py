"""Every exported format, read with VTK's own readers, holds what the result files and the mesh say."""
import csv
import json
import os
import shutil
import subprocess
import unittest

import h5py
import numpy

from small_project import Folder, run

READER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "read_with_vtk.py")
# Format -> ending of its frames, of its list, class of VTK; the others are compared with the first.
FORMATS = {
    "pvd": (".vtp", ".pvd", "vtkPolyData"),
    "vtu": (".vtu", ".pvd", "vtkUnstructuredGrid"),
    "hdf": (".hdf", ".hdf.series", "vtkUnstructuredGrid"),
}
TETRA_FACES = ((0, 2, 1), (0, 1, 3), (1, 2, 3), (0, 3, 2))
HEXA_FACES = ((0, 3, 2, 1), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7))
WEDGE_FACES = ((0, 2, 1), (3, 4, 5), (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5))
FACES = {10: TETRA_FACES, 12: HEXA_FACES, 13: WEDGE_FACES}


def find_vtk():
    """Words that start a Python with VTK's readers; none without. VTK_PYTHON names one."""
    if "VTK_PYTHON" in os.environ:
        return [os.environ["VTK_PYTHON"]]
    known = subprocess.run(["/usr/bin/python3", "-c", "import vtkmodules.vtkIOHDF"], capture_output=True, check=False)
    if known.returncode == 0:
        return ["/usr/bin/python3"]
    return [shutil.which("pvpython")] if shutil.which("pvpython") else None


VTK = find_vtk()


class Read:
    """One file of one time as VTK read it."""

    def __init__(self, path):
        data = numpy.load(path)
        names = json.loads(str(data["names"]))
        self.kind, self.cells = str(data["kind"]), int(data["cells"])
        self.time = float(data["time"]) if "time" in data else None
        self.points, self.connectivity, self.offsets = (data[key] for key in ("points", "connectivity", "offsets"))
        self.arrays = {name: data[key] for key, name in names.items() if key.startswith("point")}
        self.numbers = {name: data[key] for key, name in names.items() if key.startswith("field")}


def boundary_of(path):
    """Faces and nodes of the boundary: faces that one cell owns."""
    with h5py.File(path) as file:
        grid = file["VTKHDF"]
        offsets, types, ids = (grid[name][()].astype("i8") for name in ("Offsets", "Types", "Connectivity"))
    faces, nodes = 0, set()
    for corners in (3, 4):
        rows = [
            ids[offsets[:-1][types == kind][:, None] + numpy.array(face)]
            for kind in FACES
            for face in FACES[kind]
            if len(face) == corners
        ]
        found, owners = numpy.unique(numpy.sort(numpy.concatenate(rows), axis=1), axis=0, return_counts=True)
        faces += int((owners == 1).sum())
        nodes.update(found[owners == 1].ravel().tolist())
    return faces, len(nodes)


def decimal(value):
    """The decimal number of a time in single precision."""
    return float(str(numpy.float32(value)))


def components(arrays):
    """Vectors as three arrays, "Name, x [unit]" and so on."""
    found = {}
    for label, values in arrays.items():
        name, bracket, unit = label.partition(" [")
        for k, axis in enumerate("xyz" if values.ndim == 2 else ()):
            found[f"{name}, {axis}{bracket}{unit}"] = values[:, k]
        if values.ndim == 1:
            found[label] = values
    return found


@unittest.skipIf(VTK is None, "neither python3-vtk9 nor pvpython is installed")
class ReadersTest(unittest.TestCase):
    def read(self, folder, names):
        out = folder / "read"
        out.mkdir(exist_ok=True)
        result = subprocess.run(
            [*VTK, READER, out, *[folder / name for name in names]],
            capture_output=True,
            text=True,
            timeout=300,
            check=False,
        )
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertNotIn("ERR|", result.stderr)
        return out

    def export(self, folder, root):
        """Every format, plain and compressed: name -> (Reads by time, static Read)."""
        done = run("run", root, "--corrected")
        self.assertEqual(done.returncode, 0, done.stderr)
        names = {f"{form}{'z' * packed}": (form, packed) for form in FORMATS for packed in (0, 1)}
        for name, (form, packed) in names.items():
            words = ("--compress",) if packed else ()
            result = run("export", root, "--out", folder / name, "--to", form, *words)
            self.assertEqual(result.returncode, 0, result.stderr)
        lists = {name: f"{name}{FORMATS[form][1]}" for name, (form, _) in names.items()}
        statics = {name: f"{name}_static{FORMATS[form][0]}" for name, (form, _) in names.items()}
        out = self.read(folder, [*lists.values(), *statics.values()])
        reads = {}
        for name, (form, _) in names.items():
            count = len(list(out.glob(f"{lists[name]}-*.npz")))
            frames = [Read(out / f"{lists[name]}-{k}.npz") for k in range(count)]
            reads[name] = (frames, Read(out / f"{statics[name]}.npz"))
            self.assertEqual({frame.kind for frame in frames}, {FORMATS[form][2]})
        return reads

    def check_times(self, frames, run_folder, name):
        """Gives the result files in the order of time."""
        known = {}
        for path in run_folder.glob(f"{name}*.k4f"):
            with h5py.File(path) as file:
                known[decimal(file["time"].attrs["value"])] = path.with_suffix(".fzr")
        self.assertEqual([frame.time for frame in frames], sorted(known))
        self.assertEqual([float(frame.numbers["TimeValue"][0]) for frame in frames], sorted(known))
        return [known[time] for time in sorted(known)]

    def check_items(self, frame, result_file):
        """Ranges as `info` tells them, values as the file holds them, not a number exactly where Status says so."""
        facts = json.loads(run("info", "--json", result_file).stdout)
        with h5py.File(result_file) as file:
            place = {label: i for i, label in enumerate(file["node_ids"][()])}
            rows = numpy.array([place.get(label, -1) for label in frame.arrays["Node label"]])
            numpy.testing.assert_array_equal(frame.arrays["Status"], (rows < 0).astype("i4"))
            arrays = components(frame.arrays)
            self.assertEqual(len(arrays), len(facts["items"]) + 2)
            for item in facts["items"]:
                unit = item["unit"].replace("/", " per ")
                label = item["meaning"] + (f" [{unit}]" if unit != "-" else "")
                values = arrays[label]
                finite = values[numpy.isfinite(values)]
                self.assertEqual(
                    (finite.min(), finite.max(), len(finite)), (item["min"], item["max"], item["values"]), label
                )
                numpy.testing.assert_array_equal(numpy.isnan(values), frame.arrays["Status"] == 1, label)
                numpy.testing.assert_array_equal(values[rows >= 0], file[f"items/{item['id']}"][()][rows[rows >= 0]])

    def check_walls(self, static):
        walls, status = static.arrays["Wall thickness [mm]"], static.arrays["Wall status"]
        numpy.testing.assert_array_equal(numpy.isnan(walls), status == 1)
        known = status == 0
        self.assertTrue((walls[known] > 0).all())
        inward = static.arrays["Inward direction"][known]
        numpy.testing.assert_allclose(numpy.linalg.norm(inward, axis=1), 1.0, atol=1e-6)
        numpy.testing.assert_allclose(
            static.arrays["Opposite hit point [mm]"][known],
            static.points[known] + walls[known, None] * inward,
            atol=2e-5,
        )

    def check_freezing(self, static, times, root):
        """Ten nodes against the temperatures along their probed rays."""
        self.assertEqual(list(static.numbers), ["Freeze temperature [°C]"])
        limit = float(static.numbers["Freeze temperature [°C]"][0])
        status, moment = static.arrays["Freeze status"], static.arrays["Time to freeze [s]"]
        numpy.testing.assert_array_equal(numpy.isnan(moment), status != 0)
        rank = static.arrays["Last to freeze, rank"]
        self.assertEqual(set(rank) - {0}, set(range(1, rank.max() + 1)))
        never = (status == 2).any()
        self.assertEqual(set(status[rank == 1]), {2 if never else 0})
        known = numpy.flatnonzero(status != 1)
        nodes = known[numpy.linspace(0, len(known) - 1, 10).astype(int)]
        words = [word for node in nodes for word in ("--node", static.arrays["Node label"][node])]
        probed = list(csv.DictReader(run("probe", root, *words).stdout.splitlines()))
        for node in nodes:
            mine = [row for row in probed if int(row["Node label"]) == static.arrays["Node label"][node]]
            hottest = [
                max(float(row["Temperature [°C]"]) for row in mine if float(row["Time [s]"]) == time) for time in times
            ]
            below = [k for k, value in enumerate(hottest) if value < limit]
            self.assertEqual(status[node], 0 if below else 2)
            if below:
                k = below[0]
                expected = (
                    times[0]
                    if k == 0
                    else numpy.interp(-limit, (-hottest[k - 1], -hottest[k]), (times[k - 1], times[k]))
                )
                self.assertAlmostEqual(moment[node], expected, delta=2e-6 * times[-1])

    def check_equal(self, frame, plain):
        numpy.testing.assert_array_equal(frame.points, plain.points)
        numpy.testing.assert_array_equal(frame.connectivity, plain.connectivity)
        numpy.testing.assert_array_equal(frame.offsets, plain.offsets)
        for mine, expected in ((frame.arrays, plain.arrays), (frame.numbers, plain.numbers)):
            self.assertEqual(set(mine), set(expected))
            for name, values in expected.items():
                self.assertEqual(mine[name].dtype, values.dtype)
                numpy.testing.assert_array_equal(mine[name], values, name)

    def check_example(self, example, name):
        folder = Folder(self)
        root = folder.copy_example(example)
        reads = self.export(folder.path, root)
        frames, static = reads["pvd"]
        results = self.check_times(frames, root / "Analysis/Run1", name)
        faces, nodes = boundary_of(next((root / "Mesh").glob("*.hdf")))
        for frame in (*frames, static):
            self.assertEqual((frame.cells, len(frame.points)), (faces, nodes))
        for frame, result in zip(frames, results):
            self.check_items(frame, result)
        self.check_walls(static)
        self.check_freezing(static, [frame.time for frame in frames], root)
        for form, (mine, my_static) in reads.items():
            self.assertEqual([frame.time for frame in mine], [frame.time for frame in frames], form)
            for frame, plain in zip((*mine, my_static), (*frames, static)):
                self.check_equal(frame, plain)
        for form, (extension, _, _) in FORMATS.items():
            plain, packed = (
                sum(path.stat().st_size for path in folder.path.glob(f"{stem}_*{extension}"))
                for stem in (form, form + "z")
            )
            self.assertLess(packed, plain / 2)

    def test_ribbed_cover(self):
        self.check_example("ribbed-cover", "cover1")

    def test_stepped_plate(self):
        self.check_example("stepped-plate", "plate1")


if __name__ == "__main__":
    unittest.main()
