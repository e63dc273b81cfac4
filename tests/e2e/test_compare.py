"""frozenlayer compare: its numbers are those that numpy finds in the two result files, and what cannot be compared
is refused."""
import csv
import re
import shutil
import unittest

import h5py
import numpy

from result_page import MAX_LEVEL, ResultPage
from small_project import MATERIAL, SmallProject, run
from test_run import PEOPLE
from test_view import cooling_box

RESULTS = {1.0: "box1_001.fzr", 2.0: "box1_002.fzr", 3.0: "box1.fzr"}


def evaluate(test, project, *words):
    done = run("run", project.root, *words)
    test.assertEqual(done.returncode, 0, done.stderr)
    return project


def copy_of(test, project, name):
    """The same project in a folder beside it."""
    other = SmallProject.__new__(SmallProject)
    other.root = project.root.parent / name
    other.points = project.points
    shutil.copytree(project.root, other.root)
    return other


def two_modes(test):
    """The same box, corrected and classic."""
    corrected = cooling_box(test)
    classic = copy_of(test, corrected, "classic")
    return evaluate(test, corrected, "--corrected"), evaluate(test, classic, "--classic")


def read_rows(path):
    with open(path, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def result_values(path):
    """Item -> node label -> value, double precision."""
    with h5py.File(path) as file:
        labels = file["node_ids"][()].tolist()
        return {int(item): dict(zip(labels, file[f"items/{item}"][()].astype("f8"))) for item in file["items"]}


def expected_numbers(a, b):
    """Of two maps from label to value: nodes, largest difference, its label, mean of the magnitudes, rms."""
    labels = sorted(set(a) & set(b))
    differences = numpy.array([b[label] - a[label] for label in labels])
    place = int(numpy.argmax(numpy.abs(differences)))
    return (
        len(labels),
        differences[place],
        labels[place],
        numpy.abs(differences).mean(),
        numpy.sqrt((differences**2).mean()),
    )


def change_item(path, item, change):
    with h5py.File(path, "r+") as file:
        values = file[f"items/{item}"]
        values[...] = change(values[()])


class CompareTest(unittest.TestCase):
    def refusal(self, *words):
        result = run("compare", *words)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, "")
        return result.stderr

    def check_row(self, row, project, a, b):
        count, largest, label, mean, rms = expected_numbers(a, b)
        self.assertEqual((row["Item"], row["Unit"]), PEOPLE[int(row["Item number"])])
        self.assertEqual(int(row["Nodes compared"]), count)
        self.assertEqual(float(row["Largest difference"]), largest)
        self.assertAlmostEqual(float(row["Mean magnitude"]), mean, delta=1e-12 * max(1.0, mean))
        self.assertAlmostEqual(float(row["RMS"]), rms, delta=1e-12 * max(1.0, rms))
        self.assertEqual(int(row["Nodes only in A"]), len(set(a) - set(b)))
        self.assertEqual(int(row["Nodes only in B"]), len(set(b) - set(a)))
        if largest == 0.0:
            self.assertEqual((row["Node label"], row["x [mm]"]), ("", ""))
            return
        self.assertEqual(int(row["Node label"]), label)
        place = [float(row[f"{axis} [mm]"]) for axis in "xyz"]
        numpy.testing.assert_allclose(place, project.points[label - 1], rtol=1e-7)

    def test_classic_against_corrected(self):
        corrected, classic = two_modes(self)
        table = corrected.root / "differences.csv"
        result = run("compare", corrected.root, classic.root, "--csv", table)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertRegex(result.stdout, r"(?m)^  A  .*part/Analysis/Run1/box1.fzr +flow +1 +corrected +pp.toml +3, 1 s")
        self.assertRegex(
            result.stdout, r"(?m)^  B  .*classic/Analysis/Run1/box1.fzr +flow +1 +classic +pp.toml +3, 1 s"
        )
        self.assertRegex(result.stdout.splitlines()[-1], r"^A and B differ by at most .* % \(Frozen ratio\), .* °C \(")
        rows = read_rows(table)
        times = {
            time: (result_values(corrected.file(n)), result_values(classic.file(n))) for time, n in RESULTS.items()
        }
        self.assertEqual(len(rows), sum(len(a) for a, _ in times.values()))
        for row in rows:
            with self.subTest(time=row["A: Time [s]"], item=row["Item"]):
                self.assertEqual(row["A: Time [s]"], row["B: Time [s]"])
                item = int(row["Item number"])
                a, b = times[float(row["A: Time [s]"])]
                self.check_row(row, corrected, a[item], b[item])
        self.assertTrue(any(float(row["Largest difference"]) != 0.0 for row in rows))

    def test_the_printed_table_is_that_of_the_file(self):
        corrected, classic = two_modes(self)
        table = corrected.root / "differences.csv"
        lines = run("compare", corrected.root, classic.root, "--csv", table).stdout.splitlines()
        printed = [re.split(r"  +", line.strip()) for line in lines if re.search(r"  (%|°C|mm|cm/s|-)  +\d", line)]
        rows = read_rows(table)
        self.assertEqual(len(printed), len(rows))
        for cells, row in zip(printed, rows):
            self.assertEqual(cells[:4], [row["Item"], row["Unit"], row["Nodes compared"], cells[3]])
            numpy.testing.assert_allclose(float(cells[3]), float(row["Largest difference"]), rtol=1e-4)
            self.assertEqual(cells[4], row["Node label"] or "-")

    def test_the_same_result_twice_is_equal(self):
        project = evaluate(self, cooling_box(self))
        again = evaluate(self, copy_of(self, project, "again"))
        for words in ((project.root, again.root), (project.file("box1_001.fzr"), again.file("box1_001.fzr"))):
            result = run("compare", *words, "--tolerance", 0)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertEqual(
                result.stdout.splitlines()[-2:], ["A and B are equal to the bit.", "Within the tolerance of 0."]
            )
        self.assertEqual(result.stdout.count("Output time 1 s\n"), 1)

    def test_one_value_that_differs_is_found(self):
        project = evaluate(self, cooling_box(self))
        other = copy_of(self, project, "other")
        with h5py.File(other.file("box1_002.fzr"), "r+") as file:
            label = int(file["node_ids"][4])
            values = file["items/2"][()]
            values[4] -= numpy.float32(0.5)
            file["items/2"][...] = values
        result = run("compare", project.root, other.root, "--tolerance", 0.6)
        self.assertEqual(result.returncode, 0, result.stderr)
        x, y, z = (f"{c:.5g}" for c in project.points[label - 1])
        line = next(line for line in result.stdout.splitlines() if " -0.5 " in line)
        self.assertRegex(line, rf"^  Maximum temperature +°C +\d+ +-0\.5 +{label} +{x} +{y} +{z} ")
        self.assertIn("\nA and B differ by at most 0.5 °C (Maximum temperature).\n", result.stdout)
        result = run("compare", project.root, other.root, "--tolerance", 0.4)
        self.assertEqual((result.returncode, result.stderr), (1, ""))
        self.assertIn("\nNot within the tolerance of 0.4.\n", result.stdout)

    def test_two_times_of_one_run(self):
        project = evaluate(self, cooling_box(self))
        result = run("compare", project.file("box1_001.fzr"), project.file("box1_002.fzr"))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Output time 1 s of A, 2 s of B\n", result.stdout)
        self.assertRegex(result.stdout, r"Maximum temperature +°C +\d+ +-10 ")

    def test_two_materials_are_named(self):
        project = cooling_box(self)
        other = copy_of(self, project, "other")
        (other.root / "Material/abs.toml").write_text(MATERIAL.replace("130.0", "90.0"))
        run_file = other.file("box1.run")
        run_file.write_text(run_file.read_text().replace("pp.toml", "abs.toml"))
        evaluate(self, project)
        evaluate(self, other)
        result = run("compare", project.root, other.root)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stdout, r"(?m)^  A  .* pp.toml ")
        self.assertRegex(result.stdout, r"(?m)^  B  .* abs.toml ")
        self.assertRegex(result.stdout, r"Frozen ratio +% +\d+ +-\d")
        shutil.copy(project.file("box1_002.fzr"), other.file("box1_002.fzr"))
        mixed = run("compare", project.root, other.root)
        self.assertEqual(mixed.returncode, 1)
        self.assertIn("made with two different files as their material", mixed.stderr)
        with h5py.File(other.file("box1_002.fzr"), "r+") as file:
            del file["inputs"]  # as older results are
        result = run("compare", project.root, other.root)
        self.assertRegex(result.stdout, r"(?m)^  A  .* resolved  +pp.toml  ")
        self.assertRegex(result.stdout, r"(?m)^  B  .* resolved  +abs.toml, pp.toml  ")

    def test_the_packing_index_of_a_thermoset_is_no_fault(self):
        project = cooling_box(self)
        (project.root / "Material/pp.toml").write_text('kind = "thermoset"\n')
        evaluate(self, project, "--classic")
        result = run("compare", project.root, project.root, "--tolerance", 0)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertRegex(result.stdout, r"  Packing index: not a number at \d+ nodes, at 0 of them in one result only")
        self.assertIn("A and B are equal to the bit.\nWithin the tolerance of 0.\n", result.stdout)

    def test_what_only_one_has_is_named(self):
        project = evaluate(self, cooling_box(self))
        other = copy_of(self, project, "other")
        other.file("box1_002.fzr").unlink()
        with h5py.File(other.file("box1_001.fzr"), "r+") as file:
            del file["items/3"]
            file["head"].attrs.modify("item_count", len(file["items"]))
        result = run("compare", project.root, other.root)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stderr, r"\AWarning: 1 of 3 output times has no result here \(box1_002.k4f\); .*\n\Z")
        self.assertIn("  1 item only in A: Centre temperature\n", result.stdout)
        self.assertIn("1 output time only in A: 2 s\n", result.stdout)
        self.assertIn("see above for what stands in one of them only.\n", result.stdout)
        self.assertEqual(run("compare", project.root, other.root, "--tolerance", 1e9).returncode, 1)

    def test_values_that_are_no_numbers_are_counted_and_a_fault(self):
        project = evaluate(self, cooling_box(self))
        other = copy_of(self, project, "other")

        def spoil(values):
            values[:3] = numpy.nan
            return values

        change_item(other.file("box1.fzr"), 1, spoil)
        result = run("compare", project.root, other.root)
        self.assertEqual(result.returncode, 1)
        self.assertIn("  Frozen ratio: not a number at 3 nodes, at 3 of them in one result only\n", result.stdout)
        self.assertIn("finite", result.stderr)

    def test_another_mesh_is_refused(self):
        project = evaluate(self, SmallProject(self))
        finer = evaluate(self, SmallProject(self, cells=(7, 4, 4)))
        longer = evaluate(self, SmallProject(self, size=(13.0, 8.0, 2.0)))
        complaint = self.refusal(project.root, finer.root)
        self.assertRegex(complaint, r"are different meshes: A has \d+ surface nodes, B \d+; compare results that were")
        complaint = self.refusal(project.root, longer.root)
        self.assertIn("box.hdf are different meshes: node 2 stands at 2, 0, 0 mm in A, at 2.1667, 0, 0 mm", complaint)

    def test_what_cannot_be_read_is_refused(self):
        project = evaluate(self, SmallProject(self))
        other = copy_of(self, project, "other")
        whole = other.file("box1.fzr").read_bytes()
        other.file("box1.fzr").write_bytes(whole[: len(whole) // 2])
        self.assertIn("other/Analysis/Run1/box1.fzr: ", self.refusal(project.root, other.root))
        other.file("box1.fzr").write_bytes(b"no result")
        self.assertIn("other/Analysis/Run1/box1.fzr: ", self.refusal(project.root, other.root))
        self.assertIn("no frozen-layer result is there", self.refusal(project.root, SmallProject(self).root))
        self.assertIn("frozen-layer result (.fzr", self.refusal(project.root, project.file("box1.run")))

    def test_page_with_the_differences(self):
        corrected, classic = two_modes(self)
        classic.file("box1_002.fzr").unlink()
        out = corrected.root / "differences.html"
        result = run("compare", corrected.root, classic.root, "--view", out)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stderr, r"\AWarning: 1 of 3 output times has no result here \(box1_002.k4f\); .*\n\Z")
        self.assertTrue(result.stdout.endswith(f"Page written:\n  {out}\n"))
        page = ResultPage(out)
        self.assertEqual(page.header["times"], [1, 2, 3])
        names = [item["name"] for item in page.header["items"]]
        self.assertEqual(len(names), len(set(names)))
        labels = page.labels()
        for place, name in ((0, "box1_001.fzr"), (2, "box1.fzr")):
            a, b = (result_values(project.file(name)) for project in (corrected, classic))
            for item, values in a.items():
                shown = page.item("Difference: " + PEOPLE[item][0])
                self.assertEqual(shown["unit"], page.item(PEOPLE[item][0])["unit"])
                self.assertIsNone(shown["blocks"][1])
                found, _ = page.item_values(shown)[place]
                expected = [b[item].get(label, numpy.nan) - values.get(label, numpy.nan) for label in labels]
                step = (shown["max"] - shown["min"]) / MAX_LEVEL
                numpy.testing.assert_allclose(found, expected, rtol=1e-6, atol=0.51 * step + 1e-6)
        self.assertLess(page.item("Difference: Frozen ratio")["min"], 0.0)

    def test_misuse(self):
        project = evaluate(self, SmallProject(self))
        words = (project.root, project.root)
        for more, text in (
            (("--tolerance", "-1"), "-1 is no number from 0"),
            (("--tolerance", "nan"), "nan is no number from 0"),
            (("--csv", project.file("box1.fzr")), "end it in .csv"),
            (("--csv", project.root / "none/x.csv"), "is no folder"),
            (("--view", project.root / "x.csv"), "end it in .html"),
        ):
            self.assertIn(text, self.refusal(*words, *more))
        self.assertIn("B is required", self.refusal(project.root))


if __name__ == "__main__":
    unittest.main()
