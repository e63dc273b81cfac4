"""Inputs that the console program passes over in silence: `frozenlayer run` tells each with its remedy."""
import pathlib
import unittest

import h5py
import numpy

from small_project import MATERIAL, QNL3DFROZENLAYER, Folder, SmallProject, flow_items, run, write_result

FLAKES = MATERIAL + "type_code = 6\n"
GAS_CODE = 6
FIBRE_ITEMS = (4, 5, 6, 9, 10, 11)
MOST_BYTES_OF_RUN_FOLDER = 224


class FaultProject(unittest.TestCase):
    def setUp(self):
        self.project = SmallProject(self)

    def check(self, *texts, words=()):
        done = run("run", self.project.file("box1.k4f"), "--intermediate-times", 0, *words)
        self.assertEqual(done.returncode, 1, done.stderr)
        for text in texts:
            self.assertIn(text, done.stderr)
        return done

    def silent(self, code=4):
        """The console program says nothing of it on either stream."""
        words = [self.project.file("box1.k4f"), self.project.root, "box", code, 1, "x"]
        done = run(*words, program=QNL3DFROZENLAYER)
        self.assertNotIn("fault", done.stdout + done.stderr)
        return done


class Thickness(FaultProject):
    def setUp(self):
        super().setUp()
        gas = numpy.where(self.project.points[:, 0] < 3.0, 1.0, -1.0)
        items = {**flow_items(self.project.temperature), 9: ("Gas", "", gas)}
        write_result(self.project.file("box1.k4f"), items, 3.0)
        self.path = self.project.root / "Mesh/box.thk"
        self.words = ("--analysis-code", GAS_CODE)
        done = run("run", self.project.file("box1.k4f"), "--intermediate-times", 0, *self.words)
        self.assertEqual((done.returncode, done.stderr.count("fault")), (0, 0), done.stderr)

    def test_text(self):
        self.path.write_text("1 2.0\n2 2.0\n")
        self.check(
            "box.thk: it cannot be used, and the skin thickness is not bounded by the wall",
            "delete it: the next run makes it again",
            words=self.words,
        )
        self.silent(GAS_CODE)

    def test_damaged(self):
        content = self.path.read_bytes()
        self.path.write_bytes(content[: len(content) // 2])
        self.check("box.thk", "delete it: the next run makes it again", words=self.words)

    def test_the_remedy_holds(self):
        content = self.path.read_bytes()
        self.path.write_bytes(content[:100])
        self.check(words=self.words)
        self.path.unlink()
        done = run("run", self.project.file("box1.k4f"), "--intermediate-times", 0, *self.words)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.path.read_bytes(), content)


class Fibre(FaultProject):
    def setUp(self):
        super().setUp()
        (self.project.root / "Material/pp.toml").write_text(FLAKES)

    def write_tensors(self, by_node=()):
        path = self.project.file("box1.k4o")
        cells, nodes = 6 * 4 * 4, len(self.project.points)
        write_result(path, {item: ("A", "", numpy.full(cells, 0.3)) for item in FIBRE_ITEMS}, 3.0)
        with h5py.File(path, "r+") as file:
            file.attrs.modify("max_element", numpy.int32(cells))
            file.attrs.modify("max_node", numpy.int32(nodes))
            for item in FIBRE_ITEMS:
                file[f"items/{item}"].attrs.modify("data_type", numpy.int32(2))
            for item in by_node:
                attributes = dict(file[f"items/{item}"].attrs)
                del file[f"items/{item}"]
                data = file.create_dataset(f"items/{item}", data=numpy.full(nodes, 0.3, dtype="f4"))
                for name, value in attributes.items():
                    data.attrs[name] = value
                data.attrs.modify("data_type", numpy.int32(1))

    def test_by_cell(self):
        self.write_tensors()
        done = run("run", self.project.file("box1.k4f"), "--intermediate-times", 0)
        self.assertEqual((done.returncode, done.stderr.count("fault")), (0, 0), done.stderr)

    def test_text(self):
        self.project.file("box1.k4o").write_text("[HEADER]\n1 0.3\n")
        self.check("box1.k4o: a binary fibre result expected, a text", "export the fibre result again as a binary one")
        self.silent()

    def test_by_node(self):
        told = "values by cell expected, values by node found; export the fibre result again with its items by cell"
        self.write_tensors(FIBRE_ITEMS)
        self.check("box1.k4o: items 4, 5, 6, 9, 10, 11: " + told)
        self.write_tensors((9, 11))
        self.check("box1.k4o: items 9, 11: " + told)
        self.silent()


class Material(FaultProject):
    def test_unknown_kind(self):
        (self.project.root / "Material/pp.toml").write_text(MATERIAL.replace("thermoplastic", "elastomer"))
        self.check(
            'pp.toml: kind: "thermoplastic" or "thermoset" expected, another kind found; set the kind',
            "The run ended early: the material cannot be used.",
        )
        self.assertEqual(self.silent().returncode & 0xFF, 24)


class TextOfShrinkage(FaultProject):
    """A text flow result beside a complete log."""

    def setUp(self):
        super().setUp()
        rows = "".join(
            f"{i} 0 0 0 {value} 0 0 0 0 0 2.0 0 0 0 0\n" for i, value in enumerate(self.project.temperature, start=1)
        )
        count = len(self.project.temperature)
        head = f"[HEADER]\n1007 9104\na\nb\nc\n0\n{count} 0 0\n"
        self.project.file("box1.k4f").write_text(f"{head}[TIME STEPS]\n1\n3.0\n[RESULTS EOF]\n{rows}")

    def warnings(self, *words):
        done = run("run", self.project.file("box1.k4f"), "--intermediate-times", 0, *words)
        self.assertEqual(done.returncode, 0, done.stderr)
        return [line for line in done.stderr.splitlines() if "taken for the gas value" in line]

    def test_told_with_the_code_that_avoids_it(self):
        warnings = self.warnings()
        self.assertEqual(len(warnings), 1)
        self.assertIn("box1.k4f is a text: with a complete log", warnings[0])
        self.assertIn("--analysis-code 2 evaluates it without the log", warnings[0])
        with h5py.File(self.project.file("box1.fzr")) as file:
            self.assertIn("6", file["items"], "the skin ratio of a gas-assisted run")

    def test_the_remedy_holds(self):
        self.assertEqual(self.warnings("--analysis-code", 2), [])
        with h5py.File(self.project.file("box1.fzr")) as file:
            self.assertNotIn("6", file["items"])

    def test_not_told_without_need(self):
        self.project.file("QNLIntermediateOutputTime.log").unlink()
        self.assertEqual(self.warnings(), [])


class LongPaths(unittest.TestCase):
    """The path of the run's folder may have 224 bytes, as the console program shows by its exit."""

    def project_of(self, bytes_of_folder):
        """A project whose run folder has a path of so many bytes."""
        folder = Folder(self).path
        rest = bytes_of_folder - len(str(folder)) - len("//Analysis/Run1")
        first = rest // 2
        root = folder / ("a" * first) / ("b" * (rest - first - 1))
        project = SmallProject(self)
        root.parent.mkdir(parents=True)
        project.root.rename(root)
        project.root = root
        self.assertEqual(len(str(root / "Analysis/Run1")), bytes_of_folder)
        return project

    def console(self, project, stage):
        words = [project.file(stage), project.root, "box", 4, 1, "x"]
        return run(*words, program=QNL3DFROZENLAYER).returncode & 0xFF

    def test_refused_exactly_where_the_evaluation_would_end(self):
        for stage in ("box1.k4f", "box1.k4w", "box1.k4c"):
            for length in (MOST_BYTES_OF_RUN_FOLDER, MOST_BYTES_OF_RUN_FOLDER + 1, 240):
                with self.subTest(f"{stage} {length}"):
                    project = self.project_of(length)
                    ends_in_exception = self.console(project, stage) == 120
                    self.assertEqual(ends_in_exception, length > MOST_BYTES_OF_RUN_FOLDER and stage != "box1.k4c")
                    done = run("run", project.file(stage), "--intermediate-times", 0)
                    self.assertEqual(done.returncode, 1 if ends_in_exception else 0, done.stderr)
                    self.assertNotIn("does not fit a buffer", done.stderr)
                    told = f"the path of the run's folder has {length} bytes and at most 224 fit; run from a folder"
                    self.assertEqual(told in done.stderr, ends_in_exception)

    def test_the_remedy_holds(self):
        project = self.project_of(240)
        done = run("run", pathlib.Path(project.root.name), "--intermediate-times", 0, cwd=project.root.parent)
        self.assertEqual(done.returncode, 0, done.stderr)


if __name__ == "__main__":
    unittest.main()
