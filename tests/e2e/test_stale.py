"""Results know what they were made from: stale and missing ones are told, and --resume makes those alone."""
import json
import pathlib
import shutil
import tempfile
import unittest

import h5py
import numpy

from digest_projects import short_projects
from result_page import ResultPage
from small_project import MATERIAL, QNL3DFROZENLAYER, SmallProject, flow_items, run, write_box_mesh, write_result

TIMES = ("box1", "box1_001", "box1_002")
MODES = ("--resolved", "--corrected")


class StaleProject(unittest.TestCase):
    def setUp(self):
        self.project = SmallProject(self)
        self.material = self.project.root / "Material/pp.toml"

    def evaluate(self, *words, stage="box1.k4f"):
        done = run("run", self.project.file(stage), *words)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done

    def results(self):
        return {name: self.project.file(name + ".fzr").read_bytes() for name in TIMES}

    def change_material(self):
        self.material.write_text(MATERIAL.replace("130.0", "125.0"))

    def states(self):
        done = run("info", self.project.root, "--json")
        self.assertEqual(done.returncode, 0, done.stderr)
        return {row["file"]: row["state"] for row in json.loads(done.stdout)["results"]}

    def last_line(self, *words):
        done = run(*words)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stderr.splitlines()[-1] if done.stderr else ""


class Record(StaleProject):
    """The group /inputs."""

    def record(self, name="box1.fzr"):
        with h5py.File(self.project.file(name)) as file:
            return dict(file["inputs"].attrs)

    def test_names_sizes_and_hashes_of_all_inputs(self):
        self.evaluate("--resolved")
        record = self.record("box1_001.fzr")
        files = {
            "mesh": self.project.root / "Mesh/box.hdf",
            "material": self.material,
            "run_file": self.project.file("box1.run"),
            "stage": self.project.file("box1_001.k4f"),
            "marker_log": self.project.file("QNLIntermediateOutputTime.log"),
        }
        for role, path in files.items():
            self.assertEqual(record[role].decode(), path.name)
            self.assertEqual(record[role + "_size"], path.stat().st_size)
            self.assertRegex(record[role + "_xxh3"].decode(), r"^[0-9a-f]{16}$")
        self.assertEqual((record["fibre_at_base"].decode(), record["fibre_at_base_size"]), ("box1.k4o", -1))
        self.assertEqual((record["mode"], record["analysis_code"], record["diagnostics"]), (2, 4, 0))
        self.assertNotIn("thickness", record)
        self.assertNotIn(str(self.project.root), str(record))
        self.assertNotEqual(record["stage_xxh3"], self.record()["stage_xxh3"])

    def test_hash_of_a_known_file(self):
        """XXH3 of no bytes at all."""
        self.project.file("QNLIntermediateOutputTime.log").write_text("")
        self.evaluate("--resolved")
        self.assertEqual(self.record()["marker_log_xxh3"], b"2d06800538d394c2")

    def test_both_programs_write_the_same_bytes(self):
        for mode in ("--classic", "--corrected", "--resolved"):
            self.evaluate(mode)
            ours = self.results()
            places = (str(path).replace("/", "\\") for path in (self.project.file("box1.k4f"), self.project.root))
            words = [*places, "box", 4, 1, "x", "--intermediate-times=2"]
            done = run(*words, *([] if mode == "--classic" else [mode]), program=QNL3DFROZENLAYER)
            self.assertEqual(done.returncode, 1, done.stderr)
            self.assertTrue(self.results() == ours, mode)

    def test_thickness_and_fibre_are_inputs_where_they_are_read(self):
        items = flow_items(self.project.temperature)
        gas = numpy.where(self.project.points[:, 0] < 3.0, 1.0, -1.0)
        write_result(self.project.file("box1.k4f"), {**items, 9: ("Gas", "", gas)}, 3.0)
        self.evaluate("--intermediate-times", 0, "--analysis-code", 6)
        thickness = self.project.root / "Mesh/box.thk"
        self.assertEqual(self.record()["thickness_size"], thickness.stat().st_size)
        self.assertEqual(self.states()["box1.fzr"], "fresh")
        thickness.unlink()
        self.assertEqual(self.states()["box1.fzr"], "stale: the wall thickness box.thk is missing")

    def test_cool_does_not_depend_on_the_log(self):
        self.evaluate(stage="box1.k4c")
        self.assertNotIn("marker_log", self.record("box1.czr"))
        self.project.file("QNLIntermediateOutputTime.log").unlink()
        self.assertEqual(self.states()["box1.czr"], "fresh")


class States(StaleProject):
    def setUp(self):
        super().setUp()
        self.evaluate()

    def test_fresh(self):
        self.assertEqual(self.states(), {name + ".fzr": "fresh" for name in TIMES})
        self.assertEqual(self.last_line("export", self.project.root, "--out", self.project.root / "surface"), "")

    def test_each_input_that_changes(self):
        write_result(self.project.file("box1_002.k4f"), flow_items(self.project.temperature), 2.0)
        self.assertEqual(
            self.states(),
            {
                "box1.fzr": "fresh",
                "box1_001.fzr": "fresh",
                "box1_002.fzr": "stale: the stage result box1_002.k4f has changed",
            },
        )
        changes = {
            "the marker log QNLIntermediateOutputTime.log is missing": lambda: self.project.file(
                "QNLIntermediateOutputTime.log"
            ).unlink(),
            "the mesh box.hdf has changed": lambda: write_box_mesh(
                self.project.root / "Mesh/box.hdf", (12.0, 8.0, 2.1), (6, 4, 4)
            ),
            "it was made with the mesh box.hdf, and the mesh is now other.hdf": lambda: self.project.file(
                "box1.run"
            ).write_text(self.project.file("box1.run").read_text().replace("box.hdf", "other.hdf")),
        }
        for reason, change in changes.items():
            change()
            self.assertEqual(self.states()["box1.fzr"], "stale: " + reason)

    def test_a_fibre_result_that_appears(self):
        write_result(self.project.file("box1.k4o"), flow_items(self.project.temperature), 3.0)
        self.assertEqual(self.states()["box1.fzr"], "stale: the fibre result box1.k4o was not there")

    def test_another_version(self):
        with h5py.File(self.project.file("box1.fzr"), "r+") as file:
            file["inputs"].attrs["version"] = numpy.bytes_(b"0.0.1")
        self.assertRegex(self.states()["box1.fzr"], r"^stale: it was made by version 0\.0\.1 of the program, and ")

    def test_missing_and_not_recorded(self):
        self.project.file("box1_001.fzr").unlink()
        with h5py.File(self.project.file("box1_002.fzr"), "r+") as file:
            del file["inputs"]
        self.assertEqual(
            self.states(), {"box1.fzr": "fresh", "box1_001.fzr": "missing", "box1_002.fzr": "not recorded"}
        )
        line = run("info", self.project.file("box1_002.fzr")).stdout
        self.assertRegex(line, r"State +not recorded")

    def test_every_reader_tells_last_that_a_time_is_missing(self):
        self.project.file("box1_001.fzr").unlink()
        told = "Warning: 1 of 3 output times has no result here (box1_001.k4f); frozenlayer run --resume makes them."
        page = self.project.root / "page.html"
        root = self.project.root
        for words in (
            ("view", root, "--out", page),
            ("export", root, "--out", root / "surface"),
            ("probe", root, "--point", "6,4,0"),
            ("compare", root, root),
        ):
            self.assertEqual(self.last_line(*words), told, words)
        self.assertEqual(ResultPage(page).header["notes"], [told[len("Warning: ") : -1]])
        chosen = self.project.file("box1_002.fzr"), self.project.file("box1.fzr")
        self.assertEqual(self.last_line("export", *chosen, "--out", root / "some"), "")

    def test_every_reader_tells_last_that_results_are_stale(self):
        self.change_material()
        told = (
            "Warning: 3 of 3 results (box1.fzr, box1_001.fzr, box1_002.fzr) are stale: the material pp.toml has "
            "changed; frozenlayer run --resume makes them."
        )
        page = self.project.root / "page.html"
        self.assertEqual(self.last_line("view", self.project.root, "--out", page), told)
        self.assertEqual(self.last_line("probe", self.project.root, "--point", "6,4,0"), told)
        self.assertEqual(ResultPage(page).header["notes"], [told[len("Warning: ") : -1]])

    def test_the_page_of_a_run_of_some_times(self):
        page = self.project.root / "page.html"
        told = "1 of 3 output times has no result here (box1_002.k4f); the run was asked for the others alone"
        self.assertEqual(
            self.last_line("run", self.project.root, "--intermediate-times", 1, "--view", page), f"Warning: {told}."
        )
        self.assertEqual(ResultPage(page).header["notes"], [told])

    def test_two_materials_or_meshes_side_by_side_are_refused(self):
        before = self.project.file("box1.fzr").read_bytes()
        self.change_material()
        self.evaluate()
        self.project.file("box1.fzr").write_bytes(before)
        done = run("export", self.project.root, "--out", self.project.root / "surface")
        self.assertEqual(done.returncode, 1)
        self.assertIn("are of different runs, made with two different files as their material: make all", done.stderr)

    def test_compare_tells_of_two_materials_of_one_name(self):
        other = self.project.root.with_name("other")
        shutil.copytree(self.project.root, other)
        (other / "Material/pp.toml").write_text(MATERIAL.replace("130.0", "125.0"))
        self.assertEqual(run("run", other).returncode, 0)
        self.assertEqual(
            self.last_line("compare", self.project.root, other),
            "Warning: A and B were made with two different files as material, both named pp.toml.",
        )


class Resume(StaleProject):
    def check(self, mode, *words, evaluated):
        """After the resumed run every result file has the bytes of those of a full run."""
        done = self.evaluate(mode, "--resume", *words)
        resumed = self.results()
        for name, taken in zip(TIMES, evaluated):
            self.assertEqual(f"{name}.fzr\n" in done.stdout, taken, f"{mode} {name}:\n{done.stdout}")
        for name in TIMES:
            self.project.file(name + ".fzr").unlink()
        self.evaluate(mode, *words)
        self.assertTrue(self.results() == resumed, mode)

    def test_missing_and_stale_times_alone(self):
        for mode in MODES:
            self.evaluate(mode)
            self.check(mode, evaluated=(False, False, False))
            self.project.file("box1_001.fzr").unlink()
            self.check(mode, evaluated=(False, True, False))
            self.project.file("box1.fzr").unlink()
            self.project.write_flow(2, 2.5 if mode == "--corrected" else 2.2)
            self.check(mode, evaluated=(True, False, True))

    def test_stages_and_readers(self):
        """Text, gas, fibre, flakes: the base time and every second of the others are made again."""
        for project in (project for project in short_projects() if project.times > 0 and not project.single_thread):
            for mode in MODES:
                with self.subTest(f"{project.name} {mode}"), tempfile.TemporaryDirectory() as folder:
                    folder = pathlib.Path(folder)
                    project.bring(folder)
                    if project.made_by:
                        run(*project.made_by, cwd=folder)
                    words = ("run", project.result, "--analysis-code", project.code, mode)
                    words += ("--intermediate-times", project.times, "--log-level", project.log_level)
                    whole = run(*words, cwd=folder)
                    paths = sorted((folder / project.result).parent.glob("*zr")) + list(folder.rglob("*_Sink.k4w"))
                    before = {path: path.read_bytes() for path in paths}
                    for path in (*paths[::2], *folder.rglob("*.sur")):
                        path.unlink()
                    resumed = run(*words, "--resume", cwd=folder)
                    # Faults of results that are kept were told before.
                    self.assertLessEqual(resumed.returncode, whole.returncode, resumed.stderr)
                    self.assertEqual(["kept" in resumed.stderr, len(paths) > 1], [True, True])
                    changed = [path.name for path in paths if path.read_bytes() != before[path]]
                    self.assertEqual(changed, [])

    def test_other_material_mode_and_code(self):
        self.evaluate("--corrected")
        self.check("--resolved", evaluated=(True, True, True))
        self.change_material()
        self.check("--resolved", evaluated=(True, True, True))
        self.check("--resolved", "--analysis-code", 2, evaluated=(True, True, True))
        self.check("--resolved", "--analysis-code", 2, "--log-level", 2, evaluated=(True, True, True))

    def test_the_search_file_is_made_without_the_base_time(self):
        for mode in MODES:
            self.evaluate(mode)
            for search in (self.project.root / "Mesh").glob("*.sur"):
                search.unlink()
            self.project.file("box1_002.fzr").unlink()
            self.check(mode, evaluated=(False, False, True))

    def test_the_sink_file_is_that_of_the_last_time(self):
        self.evaluate("--log-level", 1)
        sink = self.project.file("box1_Sink.k4w")
        before = sink.read_bytes()
        self.project.file("box1_001.fzr").unlink()
        sink.unlink()
        self.check("--resolved", "--log-level", 1, evaluated=(False, True, True))
        self.assertEqual(sink.read_bytes(), before)

    def test_the_page_shows_kept_results_too(self):
        whole, resumed = self.project.root / "whole.html", self.project.root / "resumed.html"
        self.evaluate("--view", whole)
        self.project.file("box1_001.fzr").unlink()
        self.evaluate("--resume", "--view", resumed)
        pages = [ResultPage(path) for path in (whole, resumed)]
        self.assertEqual(pages[0].header, pages[1].header)
        self.assertEqual(pages[0].blocks, pages[1].blocks)

    def test_nothing_to_do(self):
        self.evaluate()
        done = self.evaluate("--resume")
        self.assertIn("3 results kept as fresh, 0 to be made\n", done.stderr)
        self.assertEqual(done.stdout, "")

    def test_a_run_tells_of_it(self):
        self.evaluate()
        self.assertNotIn("--resume", self.evaluate().stderr)
        self.project.file("box1_001.fzr").unlink()
        told = "Note: 2 of 3 results stand here already and are fresh: with --resume only the others are evaluated.\n"
        self.assertIn(told, self.evaluate().stderr)

    def test_refusals(self):
        done = run("run", self.project.root, "--classic", "--resume")
        self.assertEqual(done.returncode, 1)
        self.assertIn("in the classic mode every output time takes values over from those", done.stderr)
        self.assertEqual(list(self.project.file("").glob("*.fzr")), [])


if __name__ == "__main__":
    unittest.main()
