"""The ways in that docs/import.md shows: files made here, its commands run as they stand, their pages read."""
import re
import shutil
import subprocess
import unittest

import h5py
import numpy

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from result_page import ResultPage
from small_project import EXAMPLES, ExamplesFolder, Folder, run
from test_import import items, mesh

DOCUMENT = EXAMPLES.parent / "docs/import.md"
SIZE, CELLS = (12.0, 8.0, 2.0), (6, 4, 4)
FREEZE = 130.0


def commands(name):
    """The lines of the document's shell blocks that name a file."""
    blocks = re.findall(r"^```sh\n(.*?)^```", DOCUMENT.read_text(encoding="utf-8"), re.S | re.M)
    return [line for block in blocks if name in block for line in block.splitlines()]


def temperature(points, seconds):
    """Linear from both faces to the middle, warmer inside; at 1 s 58.3 % of the wall is frozen."""
    depth = numpy.minimum(points[:, 2], SIZE[2] - points[:, 2])
    return 60.0 + 120.0 * depth / seconds


def frozen_share(seconds):
    return min(100.0, 100.0 * (FREEZE - 60.0) / 120.0 * seconds)


class WayCase(unittest.TestCase):
    def setUp(self):
        self.folder = ExamplesFolder(self)
        self.points, self.hexas = foreign.box(SIZE, CELLS)

    def take(self, name):
        """Runs the commands about a file; what they printed."""
        lines = commands(name)
        self.assertTrue(lines, name)
        told = []
        for line in lines:
            done = self.folder.shell(line)
            self.assertEqual(done.returncode, 0, f"{line}\n{done.stderr}")
            told.append(done.stdout + done.stderr)
        return told

    def check_page(self, name, times):
        """Every value is that of the same numbers by way of .vtu; on the faces, away from the rim, the frozen ratio is
        that of the wall within 4 points: what cells of a quarter of the wall leave."""
        members = []
        for seconds in times:
            member = f"t{seconds:g}.vtu"
            data = {"T": temperature(self.points, seconds)}
            foreign.write_vtu(self.folder.path / member, self.points, self.hexas, data)
            members.append((seconds, member))
        foreign.write_pvd(self.folder.path / "same.pvd", members)
        done = self.folder.shell("frozenlayer show same.pvd --freeze-temperature 130 --out same.html")
        self.assertEqual(done.returncode, 0, done.stderr)
        page, same = ResultPage(self.folder.path / name), ResultPage(self.folder.path / "same.html")
        self.assertEqual(page.header["times"], times)
        self.assertEqual(same.header["times"], times)
        numpy.testing.assert_array_equal(page.positions(), same.positions())
        x, y, z = page.positions().reshape(-1, 3).T
        inside = (abs(x - 6) < 3) & (abs(y - 4) < 2.5) & ((z < 0.01) | (z > 1.99))
        self.assertGreater(inside.sum(), 10)
        found, expected = (each.item_values(each.item("Frozen ratio")) for each in (page, same))
        for seconds, (values, _), (others, _) in zip(times, found, expected):
            numpy.testing.assert_array_equal(values, others)
            numpy.testing.assert_allclose(values[inside], frozen_share(seconds), atol=4.0, err_msg=str(seconds))


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
class WaysTest(WayCase):
    def test_calculix(self):
        times = [0.5, 1.0]
        for binary in (False, True):
            with self.subTest(binary=binary):
                values = [temperature(self.points, seconds) for seconds in times]
                foreign.write_frd(self.folder.path / "plate.frd", self.points, self.hexas, times, values, binary)
                self.take("plate.frd")
                self.check_page("plate.html", times)

    def write_values(self, name, times, order=None):
        order = numpy.arange(len(self.points)) if order is None else order
        columns = {"node": order + 1}
        for seconds in times:
            columns[f"temperature@{seconds:g}"] = temperature(self.points, seconds)[order]
        foreign.write_table(self.folder.path / name, columns)

    def test_abaqus(self):
        times = [0.5, 1.0]
        foreign.write_inp(self.folder.path / "part.inp", self.points, self.hexas, {"hot": [1, 2]})
        self.write_values("part.csv", times, numpy.random.default_rng(3).permutation(len(self.points)))
        self.take("part.inp")
        self.check_page("part.html", times)

    def test_gmsh(self):
        """A second box beside the first is the runner: left out."""
        beside = self.points + numpy.array([SIZE[0], 0.0, 0.0])
        cells = self.hexas + [(kind, [n + len(self.points) for n in nodes]) for kind, nodes in self.hexas]
        groups = [1] * len(self.hexas) + [2] * len(self.hexas)
        foreign.write_msh(
            self.folder.path / "cover.msh",
            numpy.vstack([self.points, beside]),
            cells,
            groups,
            {1: "cover", 2: "runner"},
        )
        self.write_values("cover.csv", [1.0])
        told = self.take("cover.msh")
        self.assertRegex(told[0], r"cover +96 .*\n +runner +96 ")
        self.assertIn("has no row for 175 of the 350 points", told[1])
        self.check_page("cover.html", [1.0])

    def test_mixed_cells(self):
        """A row of boxes of each: hexahedra, wedges, pyramids around a middle, tetrahedra."""
        points, cells = self.points.tolist(), []
        for number, (_, c) in enumerate(self.hexas):
            way = number // 2 % 3
            if way == 0:
                cells.append((foreign.HEXA, c))
            elif way == 1:
                cells += [(foreign.WEDGE, [c[i] for i in w]) for w in ((0, 1, 3, 4, 5, 7), (1, 2, 3, 5, 6, 7))]
            else:
                points.append(numpy.mean([self.points[i] for i in c], axis=0).tolist())
                sides = ((0, 1, 2, 3), (4, 7, 6, 5), (0, 4, 5, 1), (1, 5, 6, 2), (2, 6, 7, 3), (3, 7, 4, 0))
                for side in sides[2:]:
                    cells.append((foreign.PYRAMID, [c[i] for i in side] + [len(points) - 1]))
                for side in sides[:2]:
                    a, b, d, e = (c[i] for i in side)
                    cells += [(foreign.TETRA, [a, b, d, len(points) - 1]), (foreign.TETRA, [a, d, e, len(points) - 1])]
        points = numpy.array(points)
        foreign.write_vtu(self.folder.path / "mixed.vtu", points, cells, {"T": temperature(points, 1.0)})
        told = self.take("mixed.vtu")[0]
        for kind in ("tetra", "hexa", "wedge", "pyramid"):
            self.assertRegex(told, rf"{kind} +\d+ ")
        page = ResultPage(self.folder.path / "mixed.html")
        self.assertEqual(page.header["times"], [2.5])
        x, y, z = page.positions().reshape(-1, 3).T
        inside = (abs(x - 6) < 3) & (abs(y - 4) < 2.5) & ((z < 0.01) | (z > 1.99))
        values = page.item_values(page.item("Frozen ratio"))[0][0][inside]
        numpy.testing.assert_allclose(values, frozen_share(1.0), atol=4.0)

    def test_every_command_is_run(self):
        """A block with another file would be one that nobody runs."""
        blocks = re.findall(r"^```sh\n(.*?)^```", DOCUMENT.read_text(encoding="utf-8"), re.S | re.M)
        self.assertEqual(
            [re.search(r"\w+\.(frd|inp|msh|vtu)", block).group() for block in blocks],
            ["plate.frd", "part.inp", "cover.msh", "mixed.vtu"],
        )


class TableTest(WayCase):
    """Meshes of our own readers, so that no VTK is needed."""

    def setUp(self):
        super().setUp()
        self.out = self.folder.path / "box"
        self.path = self.folder.path / "box.inp"
        foreign.write_inp(self.path, self.points, self.hexas)
        self.values = temperature(self.points, 1.0)

    def bring_in(self, table, *words):
        return run(
            "import", self.path, "--values", table, "--out", self.out, "--freeze-temperature", 130, "--force", *words
        )

    def check_same(self, table, *words):
        done = self.bring_in(table, *words)
        self.assertEqual(done.returncode, 0, done.stderr)
        numpy.testing.assert_array_equal(items(self.out / "Analysis/Run1/box1.k4f")[6], self.values.astype("f4"))
        return done

    def test_places(self):
        order = numpy.random.default_rng(1).permutation(len(self.points))
        columns = dict(zip("xyz", self.points[order].T), T=self.values[order])
        foreign.write_table(self.folder.path / "t.csv", columns)
        self.check_same(self.folder.path / "t.csv")
        columns["z"] = columns["z"] + 1.0
        foreign.write_table(self.folder.path / "t.csv", columns)
        refused = self.bring_in(self.folder.path / "t.csv")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("not a number or not given", refused.stderr)

    def test_hdf5(self):
        with h5py.File(self.folder.path / "t.h5", "w") as file:
            file["node"] = numpy.arange(len(self.points), dtype="i4") + 1
            file["temperature@0.5"] = self.values + 1.0
            file["temperature@1"] = self.values
        self.check_same(self.folder.path / "t.h5")

    def test_unknown_and_missing_nodes_are_told(self):
        labels = numpy.arange(len(self.points)) + 1
        labels[7] = 1000
        foreign.write_table(self.folder.path / "t.csv", {"node": labels, "T": self.values})
        done = self.bring_in(self.folder.path / "t.csv", "--allow-missing", 1)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("1 of 175 rows belong to no node of", done.stderr)
        self.assertIn("has no row for 1 of the 175 points", done.stderr)
        self.assertIn("filled from their neighbours", done.stderr)
        self.assertEqual(self.bring_in(self.folder.path / "t.csv").returncode, 1)

    def test_a_mesh_alone_is_answered_by_the_table(self):
        refused = run("import", self.path, "--out", self.out, "--freeze-temperature", 130)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("give the values of its nodes as a table with --values", refused.stderr)


class RegionsTest(WayCase):
    def test_sets_are_chosen_by_name(self):
        path = self.folder.path / "box.inp"
        left = [i for i in range(96) if i % 6 < 3]
        foreign.write_inp(path, self.points, self.hexas, {"left": left, "first": [0], "all": range(96)})
        foreign.write_table(
            self.folder.path / "t.csv", {"node": numpy.arange(175) + 1, "T": temperature(self.points, 1.0)}
        )
        listed = run("import", path, "--list").stdout
        for name, count in (("left", 48), ("first", 1), ("all", 96)):
            self.assertRegex(listed, rf"{name} +{count} ")
        out = self.folder.path / "box"
        for words, count in (
            (("--part", "left"), 48),
            (("--part", "left", "--ignore", "first"), 47),
            (("--ignore", "LEFT"), None),
            ((), 96),
        ):
            done = run(
                "import",
                path,
                "--values",
                self.folder.path / "t.csv",
                "--out",
                out,
                "--freeze-temperature",
                130,
                "--force",
                *words,
            )
            self.assertEqual(done.returncode, 0 if count else 1, done.stderr)
            if count:
                self.assertEqual(len(mesh(out / "Mesh/box.hdf")["Types"]), count)
            else:
                self.assertIn('no region "LEFT" of --ignore; there are "left" (48 cells)', done.stderr)

    def test_info_tells_of_foreign_files(self):
        path = self.folder.path / "plate.frd"
        values = [temperature(self.points, seconds) for seconds in (0.5, 1.0)]
        foreign.write_frd(path, self.points, self.hexas, [0.5, 1.0], values)
        told = run("info", path)
        self.assertEqual(told.returncode, 0, told.stderr)
        self.assertRegex(told.stdout, r"hexa +96 +192\n")
        self.assertRegex(told.stdout, r"temperature +NDTEMP +points +its name +60 +300 ")
        self.assertRegex(told.stdout, r"0\.5 .*plate.frd +index 1\n +1 .*plate.frd +base time")


class OtherFormatsTest(unittest.TestCase):
    def test_known_formats_are_answered_with_a_way(self):
        if not READERS_ARE_BUILT_IN:
            self.skipTest("built without VTK")
        folder = Folder(self).path
        for name, text in (
            ("b.xdmf", "import meshio; m = meshio.read('{0}/b.xdmf'); m.field_data.clear(); m.write('{0}/b.vtu')"),
            ("b.med", "meshio.read('{0}/b.med')"),
            ("b.unv", '"gmsh {0}/b.unv -save -o {0}/b.msh"'),
            ("b.bdf", "--values TABLE.csv"),
            ("b.odb", "frozenlayer import {0}/b.inp --values TABLE.csv"),
            ("b.rst", "--values TABLE.csv"),
            ("b.doc", "is of no known format"),
        ):
            with self.subTest(name=name):
                (folder / name).write_text("x")
                refused = run("import", folder / name, "--out", folder / "out", "--freeze-temperature", 130)
                self.assertEqual(refused.returncode, 1)
                self.assertIn(text.format(folder), refused.stderr)
                self.assertEqual(refused.stderr.count("\n"), 1)


@unittest.skipUnless(shutil.which("ccx"), "CalculiX is not here: tools/install_packages.sh calculix")
class CalculixTest(WayCase):
    """A box that ccx cools: its .frd in both forms against the temperatures that it prints into the .dat."""

    DECK = """*INCLUDE, INPUT=mesh.inc
*MATERIAL, NAME=A
*CONDUCTIVITY
0.18
*DENSITY
9.5e-10
*SPECIFIC HEAT
2.3e9
*SOLID SECTION, ELSET=EALL, MATERIAL=A
*INITIAL CONDITIONS, TYPE=TEMPERATURE
NALL, 230.
*STEP, INC=100
*HEAT TRANSFER, DIRECT
0.5, 2.
*BOUNDARY
WALL, 11, 11, 50.
*{keyword}
NT
*NODE PRINT, NSET=NALL
NT
*END STEP
"""

    def solve(self, keyword):
        """Output times, and temperatures by time and node, as printed."""
        path = self.folder.path
        foreign.write_inp(path / "mesh.inc", self.points, self.hexas, {"EALL": range(96)})
        walls = [n + 1 for n in numpy.flatnonzero((self.points[:, 2] == 0) | (self.points[:, 2] == SIZE[2]))]
        with open(path / "mesh.inc", "a", encoding="ascii") as file:
            file.write("*NSET, NSET=NALL, GENERATE\n1, 175\n*NSET, NSET=WALL\n" + "".join(f"{n},\n" for n in walls))
        (path / "slab.inp").write_text(self.DECK.format(keyword=keyword))
        done = subprocess.run(["ccx", "slab"], cwd=path, capture_output=True, encoding="utf-8", timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stdout[-1000:])
        blocks = re.split(r"temperatures for set NALL and time +(\S+)\n", (path / "slab.dat").read_text())
        times = [float(word) for word in blocks[1::2]]
        return times, [
            numpy.array([float(line.split()[1]) for line in block.split("\n") if line.strip()])
            for block in blocks[2::2]
        ]

    def test_both_forms(self):
        for keyword in ("NODE FILE", "NODE OUTPUT"):
            with self.subTest(keyword=keyword):
                times, printed = self.solve(keyword)
                self.assertEqual(times, [0.5, 1.0, 1.5, 2.0])
                out = self.folder.path / "slab"
                done = run(
                    "import", self.folder.path / "slab.frd", "--out", out, "--freeze-temperature", 130, "--force"
                )
                self.assertEqual(done.returncode, 0, done.stderr)
                for index, expected in zip(("_001", "_002", "_003", ""), printed):
                    found = items(out / f"Analysis/Run1/slab1{index}.k4f")[6]
                    numpy.testing.assert_allclose(found, expected, rtol=6e-6)


if __name__ == "__main__":
    unittest.main()
