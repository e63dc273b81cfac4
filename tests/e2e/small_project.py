"""Small complete projects for end-to-end tests: a box of hexahedra with stage results, written with h5py."""
import os
import pathlib
import shutil
import subprocess
import tempfile

import h5py
import numpy

FROZENLAYER = os.environ.get("FROZENLAYER", "")
QNL3DFROZENLAYER = os.environ.get("QNL3DFROZENLAYER", "")
EXAMPLES = pathlib.Path(os.environ.get("QNL_EXAMPLES", ""))

MATERIAL = """name = "Test polymer"
kind = "thermoplastic"
freeze_temperature = 130.0
density = 1.0
"""

RUN_FILE = """[MESH]
MeshCount = 1
Mesh1 = box.hdf
[MATERIAL]
MaterialCount = 1
Material1 = pp.toml
"""


class Folder:
    """A temporary folder that goes with the test."""

    def __init__(self, test):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="qnl_e2e_"))
        test.addCleanup(shutil.rmtree, self.path, ignore_errors=True)

    def copy_example(self, name):
        return pathlib.Path(shutil.copytree(EXAMPLES / name, self.path / name))


class ExamplesFolder(Folder):
    """A folder that holds nothing but the examples, as they come, and a shell that knows frozenlayer."""

    def __init__(self, test):
        super().__init__(test)
        shutil.copytree(EXAMPLES, self.path / "examples")

    def shell(self, command):
        """Runs a command line of a document; texts captured."""
        return subprocess.run(
            ["sh", "-c", command],
            cwd=self.path,
            env={**os.environ, "PATH": f"{pathlib.Path(FROZENLAYER).parent}:{os.environ['PATH']}"},
            capture_output=True,
            encoding="utf-8",
            timeout=300,
            check=False,
        )


def write_box_mesh(path, size, cells):
    """A box from the origin, `size` in mm, with `cells` hexahedra along each axis. Returns the points."""
    nx, ny, nz = (n + 1 for n in cells)
    axes = [numpy.linspace(0.0, s, n + 1) for s, n in zip(size, cells)]
    points = numpy.array([(x, y, z) for z in axes[2] for y in axes[1] for x in axes[0]])
    corners = []
    for k in range(cells[2]):
        for j in range(cells[1]):
            for i in range(cells[0]):
                base = i + nx * (j + ny * k)
                ring = [base, base + 1, base + 1 + nx, base + nx]
                corners += ring + [n + nx * ny for n in ring]
    count = cells[0] * cells[1] * cells[2]
    with h5py.File(path, "w") as file:
        grid = file.create_group("VTKHDF")
        grid.attrs["Version"] = numpy.array([1, 0], dtype="i4")
        grid.attrs.create("Type", numpy.bytes_("UnstructuredGrid"), dtype="S16")
        grid["NumberOfPoints"] = numpy.array([len(points)], dtype="i8")
        grid["NumberOfCells"] = numpy.array([count], dtype="i8")
        grid["NumberOfConnectivityIds"] = numpy.array([8 * count], dtype="i8")
        grid["Points"] = points
        grid["Connectivity"] = numpy.array(corners, dtype="i8")
        grid["Offsets"] = numpy.arange(0, 8 * count + 1, 8, dtype="i8")
        grid["Types"] = numpy.full(count, 12, dtype="u1")
        grid["CellData/Region"] = numpy.zeros(count, dtype="i4")
    return points


def write_result(path, items, seconds=None, index=0, node_ids=None):
    """`items`: id -> (name, unit, values). Without `seconds` the file tells no time."""
    count = len(next(iter(items.values()))[2])
    with h5py.File(path, "w") as file:
        file.attrs["format"] = "qnl-result"
        for name, value in {"format_version": 1, "result_version": 1, "max_node": count, "max_element": 0}.items():
            file.attrs.create(name, value, dtype="i4")
        head = file.create_group("head")
        for name, value in {"code": 1, "stamp": 0, "flag": 0, "item_count": len(items)}.items():
            head.attrs.create(name, value, dtype="i4")
        for name in ("mesh", "material", "project"):
            head.attrs[name] = ""
        if seconds is not None:
            time = file.create_group("time")
            time.attrs.create("index", index, dtype="i4")
            time.attrs.create("value", seconds, dtype="f4")
            time.attrs["unit"] = "s"
        for item, (name, unit, values) in items.items():
            data = file.create_dataset(f"items/{item}", data=numpy.asarray(values, dtype="f4"))
            data.attrs["name"] = name
            data.attrs["unit"] = unit
            data.attrs.create("data_type", 1, dtype="i4")
            data.attrs.create("max", numpy.nanmax(values), dtype="f4")
            data.attrs.create("min", numpy.nanmin(values), dtype="f4")
        if node_ids is not None:
            file["node_ids"] = numpy.asarray(node_ids, dtype="i4")


def flow_items(temperature):
    zero = numpy.zeros(len(temperature))
    return {
        6: ("Temperature", "oC", temperature),
        11: ("Velocity_u", "cm/s", zero),
        12: ("Velocity_v", "cm/s", zero),
        13: ("Velocity_w", "cm/s", zero),
        14: ("VolumeShrinkage", "%", zero + 2.0),
        17: ("Density", "g/cm3", zero + 1.0),
    }


class SmallProject:
    """box1: flow at the base time 3 s and at _001 1 s, _002 2 s; cool and warp at the base time."""

    def __init__(self, test, size=(12.0, 8.0, 2.0), cells=(6, 4, 4), marker=True):
        self.root = Folder(test).path / "part"
        for folder in ("Mesh", "Material", "Analysis/Run1"):
            (self.root / folder).mkdir(parents=True)
        self.points = write_box_mesh(self.root / "Mesh/box.hdf", size, cells)
        (self.root / "Material/pp.toml").write_text(MATERIAL)
        self.file("box1.run").write_text(RUN_FILE)
        if marker:
            self.file("QNLIntermediateOutputTime.log").write_text("1 1.0\n2 2.0\n[EOF]\n")
        depth = numpy.minimum(self.points[:, 2], size[2] - self.points[:, 2])
        self.temperature = 80.0 + 140.0 * depth / size[2]
        for index, seconds in ((0, 3.0), (1, 1.0), (2, 2.0)):
            self.write_flow(index, seconds)
        write_result(
            self.file("box1.k4c"),
            {1: ("Temperature", "oC", self.temperature), 2: ("CoolingTime", "s", self.temperature / 10.0)},
            3.0,
        )
        zero = numpy.zeros(len(self.points))
        write_result(
            self.file("box1.k4w"),
            {
                1: ("Displacement_x", "mm", zero),
                2: ("Displacement_y", "mm", zero),
                3: ("Displacement_z", "mm", zero - 0.1),
                7: ("VolumeShrinkage", "%", zero + 2.0),
            },
            3.0,
        )

    def write_flow(self, index, seconds, node_ids=None):
        name = "box1.k4f" if index == 0 else f"box1_{index:03d}.k4f"
        write_result(self.file(name), flow_items(self.temperature + 10.0 / (seconds or 1.0)), seconds, index, node_ids)

    def file(self, name):
        return self.root / "Analysis/Run1" / name


def run(*words, program=None, **options):
    """Runs `frozenlayer` (or `program`) with the words; texts captured."""
    return subprocess.run(
        [program or FROZENLAYER, *map(str, words)],
        capture_output=True,
        encoding="utf-8",
        timeout=300,
        check=False,
        **options,
    )
