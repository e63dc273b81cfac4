"""frozenlayer run: tables, progress, files, input checks, faults, modes, exit codes."""
import os
import pathlib
import pty
import re
import select
import subprocess
import unittest

import h5py
import numpy

from small_project import FROZENLAYER, Folder, SmallProject, run

PEOPLE = {
    1: ("Frozen ratio", "%"),
    2: ("Maximum temperature", "°C"),
    3: ("Centre temperature", "°C"),
    4: ("Average temperature", "°C"),
    5: ("Bulk temperature", "°C"),
    7: ("Mould temperature difference", "°C"),
    8: ("Maximum cooling time", "s"),
    11: ("Packing index", "-"),
    12: ("Sink-mark displacement, total", "mm"),
    13: ("Sink-mark displacement, x", "mm"),
    14: ("Sink-mark displacement, y", "mm"),
    15: ("Sink-mark displacement, z", "mm"),
    16: ("Maximum volume shrinkage", "%"),
    17: ("Average velocity, x", "cm/s"),
    18: ("Average velocity, y", "cm/s"),
    19: ("Average velocity, z", "cm/s"),
}
# Behind the items of the file: what the resolved mode reads of the walls.
LAYERS = [
    ["Frozen layer, this side", "mm"],
    ["Frozen layer, far side", "mm"],
    ["Molten core", "mm"],
    ["Wall thickness", "mm"],
]


def tables(text):
    """Heading line -> rows (name, unit, minimum, mean, maximum, nodes)."""
    found = {}
    for block in text.split("\n\n"):
        lines = block.split("\n")
        if lines[0].startswith("Output time"):
            found[lines[0]] = [re.split(r"  +", line.strip()) for line in lines[2:]]
    return found


def expected_rows(path):
    with h5py.File(path) as file:
        rows = []
        for item in sorted(file["items"], key=int):
            values = file[f"items/{item}"][()].astype("f8")
            numbers = [values.min(), values.mean(), values.max()]
            rows.append((*PEOPLE[int(item)], numbers, len(values)))
        return rows


class RunTest(unittest.TestCase):
    def check_table(self, rows, path):
        expected = expected_rows(path)
        names = [row[:2] for row in rows]
        self.assertEqual(names[: len(expected)], [list(row[:2]) for row in expected])
        self.assertEqual(names[len(expected) :], LAYERS)
        for row, (_, _, numbers, count) in zip(rows, expected):
            self.assertEqual(int(row[5]), count)
            for text, number in zip(row[2:5], numbers):
                self.assertLessEqual(abs(float(text) - number), 6e-5 * abs(number) + 1e-12, row)

    def check_fails(self, result, *texts):
        self.assertEqual(result.returncode, 1, result.stderr)
        for text in texts:
            self.assertIn(text, result.stderr)

    def test_example_tables_hold_what_the_files_hold(self):
        project = Folder(self).copy_example("ribbed-cover")
        result = run("run", project, "--intermediate-times", 1)
        self.assertEqual(result.returncode, 0, result.stderr)
        folder = project / "Analysis/Run1"
        found = tables(result.stdout)
        names = [f"Output time 0.25 s, {folder}/cover1_001.fzr", f"Output time 6.4 s, {folder}/cover1.fzr"]
        self.assertEqual(list(found), names)
        for heading, file in zip(names, ("cover1_001.fzr", "cover1.fzr")):
            self.check_table(found[heading], folder / file)
        self.assertIn("part nodes of 22396", result.stderr)

    def test_every_output_time_gets_a_line_and_a_table(self):
        project = SmallProject(self)
        result = run("run", project.file("box1.k4f"))
        self.assertEqual(result.returncode, 0, result.stderr)
        lines = [line for line in result.stderr.split("\n") if line.startswith("Output time")]
        self.assertEqual(
            [line.split(":")[0] for line in lines],
            ["Output time 3 s (1 of 3)", "Output time 1 s (2 of 3)", "Output time 2 s (3 of 3)"],
        )
        found = tables(result.stdout)
        self.assertEqual(
            [heading.split(",")[0] for heading in found], ["Output time 1 s", "Output time 2 s", "Output time 3 s"]
        )
        for (heading, rows), file in zip(found.items(), ("box1_001.fzr", "box1_002.fzr", "box1.fzr")):
            self.assertTrue(heading.endswith(file))
            self.check_table(rows, project.file(file))

    def test_written_files_are_listed_and_there(self):
        project = SmallProject(self)
        result = run("run", project.root)
        listed = result.stdout.split("Files written:\n")[1].split()
        for name in ("box1.fzr", "box1_001.fzr", "box1_002.fzr"):
            self.assertIn(str(project.file(name)), listed)
        self.assertIn(str(project.root / "Mesh/box.sur"), listed)
        for name in listed:
            self.assertTrue(os.path.isfile(name), name)
        again = run("run", project.root).stdout.split("Files written:\n")[1].split()
        self.assertNotIn(str(project.root / "Mesh/box.sur"), again)

    def test_time_that_the_file_does_not_tell_is_an_index(self):
        project = SmallProject(self)
        project.write_flow(2, None)
        result = run("run", project.root)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Output time index 2 (3 of 3): ", result.stderr)
        self.assertEqual(
            [heading.split(",")[0] for heading in tables(result.stdout)],
            ["Output time 3 s", "Output time 1 s", "Output time index 2"],
        )

    def test_relative_paths_and_folders(self):
        project = SmallProject(self)
        for folder, word in (
            (project.root, "."),
            (project.root, "Analysis/Run1/box1.k4f"),
            (project.root / "Analysis/Run1", "box1.k4f"),
            (project.root.parent, "part/"),
        ):
            with self.subTest(word=word):
                result = run("run", word, "--intermediate-times", 0, cwd=folder)
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertIn("box1.fzr", result.stdout)

    def test_number_of_intermediate_times(self):
        project = SmallProject(self)
        for count, expected in (("0", 1), ("1", 2), ("auto", 3)):
            with self.subTest(count=count):
                result = run("run", project.root, "--intermediate-times", count)
                self.assertEqual(len(tables(result.stdout)), expected)

    def test_modes_stand_in_the_result(self):
        project = SmallProject(self)
        for words, flag in (((), 2), (("--corrected",), 1), (("--classic",), 0), (("--resolved",), 2)):
            run("run", project.root, "--intermediate-times", 0, *words)
            with h5py.File(project.file("box1.fzr")) as file:
                self.assertEqual(file["head"].attrs["flag"], flag)

    def test_cool_and_warp_tables(self):
        project = SmallProject(self)
        cool = run("run", project.file("box1.k4c"))
        self.assertEqual(cool.returncode, 0, cool.stderr)
        names = [row[:2] for row in tables(cool.stdout)[f"Output time 3 s, {project.file('box1.czr')}"]]
        self.assertIn(["Maximum cooling time", "s"], names)
        warp = run("run", project.file("box1.k4w"))
        self.assertEqual(warp.returncode, 0, warp.stderr)
        rows = tables(warp.stdout)[f"Output time 3 s, {project.file('box1.wzr')}"]
        self.assertEqual(rows[0][:2], ["Sink-mark displacement", "mm"])

    def test_classic_warp_says_that_no_node_has_a_result(self):
        project = SmallProject(self)
        result = run("run", project.file("box1.k4w"), "--classic")
        self.assertIn("no node has a result", result.stdout)

    def test_messages_stay_off_standard_output(self):
        project = SmallProject(self, marker=False)
        result = run("run", project.root, "--log-level", 1, "--threads", 2)
        self.assertEqual(result.returncode, 0, result.stderr)
        for text in ("Total Analysis Time: ", "nThread = 2", "QNLIntermediateOutputTime.log doesn't exist !"):
            self.assertIn(text, result.stderr)
            self.assertNotIn(text, result.stdout)

    def test_results_do_not_depend_on_threads(self):
        contents = []
        for threads in (1, 2, 3):
            project = SmallProject(self)
            run("run", ".", "--threads", threads, cwd=project.root)
            contents.append([project.file(name).read_bytes() for name in ("box1.fzr", "box1_002.fzr")])
        self.assertEqual(contents[0], contents[1])
        self.assertEqual(contents[0], contents[2])

    def test_deep_walls_are_counted(self):
        cube = SmallProject(self, size=(4.0, 4.0, 4.0), cells=(4, 4, 4))
        result = run("run", cube.file("box1.k4f"), "--intermediate-times", 0)
        # Every ray of a cube is longer than three times a sixth of its edge.
        self.assertIn("thicker than the depth window of 2 mm", result.stderr)
        self.assertIn("at 98 part nodes of 98;", result.stderr)

    def test_missing_inputs(self):
        cases = {
            "Analysis/Run1/box1.run": "the run file",
            "Mesh/box.hdf": "the mesh that",
            "Material/pp.toml": "the material that",
        }
        for name, role in cases.items():
            with self.subTest(name=name):
                project = SmallProject(self)
                (project.root / name).unlink()
                self.check_fails(run("run", project.root), f"{project.root / name} is missing: {role}")

    def test_wrong_targets(self):
        project = SmallProject(self)
        result = run("run", project.file("box1_002.k4f"))
        self.check_fails(result, f"name the base file {project.file('box1.k4f')} instead")
        self.check_fails(run("run", project.file("box1.k4p")), f"{project.file('box1.k4p')} is missing")
        self.check_fails(run("run", project.root / "Mesh"), "no stage result is found")
        self.check_fails(run("run", project.root, "--fibre-probe"), "no fibre result is found", ".k4o")
        self.check_fails(run("run", project.root / "Mesh/box.hdf"), "a file of a run is expected at")
        self.check_fails(run("run", project.root, "--intermediate-times", 3), "box1_003.k4f is missing")
        project.file("box1_001.k4f").unlink()
        self.check_fails(run("run", project.root), "box1_001.k4f is missing while")

    def test_a_path_that_holds_two_stages_is_evaluated_as_both(self):
        project = SmallProject(self)
        root = project.root.rename(project.root.with_name("old.k4p"))
        result = run("run", root, "--intermediate-times", 0)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("the path holds the extensions of flow and pack, and the run takes it for all", result.stderr)
        self.assertTrue((root / "Analysis/Run1/box1.fzr.pzr").is_file())

    def test_wrong_options(self):
        project = SmallProject(self)
        for words in (
            ("--threads", 0),
            ("--intermediate-times", "many"),
            ("--intermediate-times", -1),
            ("--analysis-code", "x"),
            ("--log-level", -1),
            ("--unknown",),
            ("second", "third"),
        ):
            with self.subTest(words=words):
                result = run("run", project.root, *words)
                self.check_fails(result)
                self.assertNotEqual(result.stderr, "")
        self.assertEqual(run("run").returncode, 1)
        self.assertEqual(run().returncode, 1)
        self.assertFalse(project.file("box1.fzr").exists())

    def test_node_ids_where_nobody_looks_at_them_are_misuse(self):
        project = SmallProject(self)
        labels = numpy.arange(1, len(project.points) + 1)
        project.write_flow(1, 1.0, node_ids=labels)
        result = run("run", project.root)
        self.check_fails(result, f"{project.file('box1_001.k4f')}: node_ids: ")
        with h5py.File(project.file("box1.k4c"), "a") as file:
            file["node_ids"] = labels.astype("i4")
        self.assertEqual(run("run", project.file("box1.k4c")).returncode, 0)

    def test_a_damaged_time_is_passed_over_and_told(self):
        project = SmallProject(self)
        data = project.file("box1_001.k4f").read_bytes()
        project.file("box1_001.k4f").write_bytes(data[: len(data) // 2])
        result = run("run", project.root)
        self.check_fails(result, "index 1 (2 of 3): not evaluated, ", "fault", str(project.file("box1_001.k4f")))
        self.assertEqual(
            [heading.split(", ")[1].split("/")[-1] for heading in tables(result.stdout)], ["box1.fzr", "box1_002.fzr"]
        )

    def test_the_fibre_probe_wants_a_fibre_result(self):
        project = SmallProject(self)
        result = run("run", project.file("box1.k4f"), "--fibre-probe", "--intermediate-times", "1", input="1\n0\n0\n")
        self.assertEqual(result.returncode, 1)
        self.assertIn(
            "no fibre orientation tensor found; name the fibre result of the same run, box1.k4o.", result.stderr
        )
        self.assertNotIn("surface node", result.stderr)
        written = [pathlib.Path(line.strip()).name for line in result.stdout.split("Files written:\n")[1].splitlines()]
        self.assertEqual([name for name in written if ".csv" in name], ["box1.fzr.csv", "box1.fzr_001.csv.csv"])

    def test_files_of_the_fibre_probe_of_a_fibre_result(self):
        project = SmallProject(self)
        for name in ("box1", "box1_001"):
            project.file(name + ".k4o").write_bytes(project.file(name + ".k4f").read_bytes())
        result = run("run", project.root, "--fibre-probe", input="1\n0\n0\n")
        for name in ("box1.csv", "box1_IdForFiber.txt", "box1_001.csv.csv", "box1_001.csv_IdForFiber.txt"):
            self.assertIn(name, result.stdout)

    def test_a_folder_under_the_name_of_a_result_is_refused(self):
        project = SmallProject(self)
        for name, options in (
            ("box1.fzr", ()),
            ("box1_002.fzr", ()),
            ("box1.fzr.csv", ("--fibre-probe",)),
            ("box1.fzr_001.csv.csv", ("--fibre-probe",)),
        ):
            project.file(name).mkdir()
            result = run("run", project.file("box1.k4f"), *options)
            self.assertEqual((result.returncode, result.stdout), (1, ""), name)
            self.assertIn(f"{project.file(name)} is a folder", result.stderr)
            self.assertIn("move the folder away, or give it another name", result.stderr)
            project.file(name).rmdir()

    def test_values_that_are_not_finite_are_told(self):
        project = SmallProject(self)
        with h5py.File(project.file("box1.k4f"), "a") as file:
            file["items/6"][3] = numpy.nan
        self.check_fails(run("run", project.root), "fault", f"{project.file('box1.k4f')}: item 6")

    def test_broken_material_and_mesh_end_the_run(self):
        for name, sentence in (
            ("Material/pp.toml", "the material cannot be used"),
            ("Mesh/box.hdf", "the mesh cannot be used"),
        ):
            with self.subTest(name=name):
                project = SmallProject(self)
                (project.root / name).write_text("no such thing")
                result = run("run", project.root)
                self.check_fails(result, sentence, name.split("/")[1])
                self.assertFalse(project.file("box1.fzr").exists())

    def test_progress_bar_moves_within_one_output_time_on_a_terminal(self):
        project = Folder(self).copy_example("stepped-plate")
        text = self.run_on_terminal("run", project, "--intermediate-times", "0")
        shares = [int(share) for share in re.findall(r"\] +(\d+) %  Output time 11.4 s \(1 of 1\)", text)]
        self.assertGreater(len(set(shares)), 5)
        self.assertEqual(shares, sorted(shares))

    def run_on_terminal(self, *words):
        master, slave = pty.openpty()
        with subprocess.Popen([FROZENLAYER, *map(str, words)], stderr=slave, stdout=subprocess.DEVNULL) as process:
            os.close(slave)
            text = b""
            while True:
                ready, _, _ = select.select([master], [], [], 120)
                try:
                    chunk = os.read(master, 65536) if ready else b""
                except OSError:
                    chunk = b""
                if not chunk:
                    break
                text += chunk
            self.assertEqual(process.wait(), 0)
        os.close(master)
        return text.decode()

    def test_a_missing_marker_log_is_told_once(self):
        project = SmallProject(self, marker=False)
        result = run("run", project.root)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stderr.count("QNLIntermediateOutputTime.log"), 1, result.stderr)
        self.assertIn(
            f"{project.file('QNLIntermediateOutputTime.log')} is missing: the normals are not smoothed", result.stderr
        )
        for name in ("box1.k4c", "box1.k4w"):
            self.assertNotIn("QNLIntermediateOutputTime.log", run("run", project.file(name)).stderr)

    def test_the_name_of_an_export_is_looked_at_before_the_run(self):
        project = SmallProject(self)
        for name, text in ((f"{project.root}/", "names no file"), (project.root / "none/x", "none is no folder")):
            with self.subTest(name=name):
                result = run("run", project.root, "--export", name)
                self.check_fails(result, "--export: ", text)
                self.assertFalse(project.file("box1.fzr").exists())

    def test_full_standard_output_is_a_failure(self):
        if not pathlib.Path("/dev/full").exists():
            self.skipTest("no /dev/full here")
        project = SmallProject(self)
        for words in (
            ["run", project.root],
            ["info", project.root],
            ["probe", project.root, "--node", "1"],
            ["demo", project.root / "demo", "--cells", 2500, "--shape", "plate"],
            ["--help"],
        ):
            with self.subTest(words[0]), open("/dev/full", "w", encoding="utf-8") as full:
                result = subprocess.run(
                    [FROZENLAYER, *map(str, words)],
                    stdout=full,
                    stderr=subprocess.PIPE,
                    encoding="utf-8",
                    timeout=300,
                    check=False,
                )
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stderr.count("standard output cannot be written"), 1, result.stderr)


if __name__ == "__main__":
    unittest.main()
