"""QNL3DFrozenLayer as its launcher and as a shell starts it: words, options, exit codes, messages."""
import re
import resource
import shlex
import subprocess
import unittest

import h5py
import numpy as np

from bare_result import without_record
from small_project import QNL3DFROZENLAYER, SmallProject, run

NORMAL, MATERIAL, MESH, EXCEPTION, USAGE = 1, 24, 48, 120, 2
MEMORY_STEP = 1 << 18


class LauncherTest(unittest.TestCase):
    def words(self, project, *more, result="box1.k4f"):
        return [str(project.file(result)), str(project.root), "box", "4", "1", *more]

    def start(self, words, *options):
        return run(*words, *options, program=QNL3DFROZENLAYER)

    def launch(self, words, *options):
        """Argument 0 is the result file, as the launcher hands it over."""
        line = shlex.join(["exec", "-a", words[0], QNL3DFROZENLAYER, *words[1:], *options])
        return subprocess.run(["bash", "-c", line], capture_output=True, text=True, timeout=300, check=False)

    def test_launcher_and_shell_forms_write_the_same(self):
        contents = []
        for start in (self.launch, self.start):
            project = SmallProject(self)
            words = [str(project.file("box1.k4f").relative_to(project.root.parent)), "part", "box", "4", "1", "x"]
            result = self.run_in(project.root.parent, start, words)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (NORMAL, "", ""))
            contents.append(project.file("box1.fzr").read_bytes())
        self.assertEqual(contents[0], contents[1])

    def run_in(self, folder, start, words):
        if start == self.start:
            return run(*words, program=QNL3DFROZENLAYER, cwd=folder)
        line = f"cd {shlex.quote(str(folder))} && " + shlex.join(["exec", "-a", words[0], QNL3DFROZENLAYER, *words[1:]])
        return subprocess.run(["bash", "-c", line], capture_output=True, text=True, timeout=300, check=False)

    def written(self, project):
        return [name for name in ("box1.fzr", "box1_001.fzr", "box1_002.fzr") if project.file(name).exists()]

    def test_in_five_words_the_run_is_the_count_as_well(self):
        project = SmallProject(self)
        self.assertEqual(self.launch(self.words(project)).returncode, NORMAL)
        self.assertEqual(self.written(project), ["box1.fzr", "box1_001.fzr"])
        self.assertFalse(project.file("box1_Sink.k4w").exists(), "at log level 0 there is no sink file")

    def test_a_sixth_word_leaves_the_count_to_the_option(self):
        project = SmallProject(self)
        self.assertEqual(self.start(self.words(project, "2")).returncode, NORMAL)
        self.assertEqual(self.written(project), ["box1.fzr"])
        self.start(self.words(project, "x"), "--intermediate-times=2")
        self.assertEqual(self.written(project), ["box1.fzr", "box1_001.fzr", "box1_002.fzr"])

    def test_the_option_wins_over_the_fifth_word(self):
        project = SmallProject(self)
        self.start(self.words(project), "--intermediate-times=0")
        self.assertEqual(self.written(project), ["box1.fzr"])

    def test_the_mode_is_classic_unless_asked(self):
        project = SmallProject(self)
        for options, flag in (((), 0), (("--corrected",), 1)):
            self.start(self.words(project, "x"), *options)
            with h5py.File(project.file("box1.fzr")) as file:
                self.assertEqual(file["head"].attrs["flag"], flag)

    def test_a_corrected_time_is_that_of_a_run_of_its_own(self):
        project = SmallProject(self)
        self.start(self.words(project, "x"), "--corrected", "--intermediate-times=2")
        together = {name: without_record(project.file(name).read_bytes()) for name in self.written(project)}
        self.assertEqual(len(set(together.values())), 3)
        for name in ("box1_001", "box1_002"):
            project.file("box1.k4f").write_bytes(project.file(name + ".k4f").read_bytes())
            self.start(self.words(project, "x"), "--corrected")
            self.assertEqual(without_record(project.file("box1.fzr").read_bytes()), together[name + ".fzr"], name)

    def test_a_corrected_uniform_temperature_stays_so_up_to_the_gate(self):
        lowest = {}
        for options in ((), ("--corrected",)):
            project = SmallProject(self)
            with h5py.File(project.root / "Mesh/box.hdf", "r+") as file:
                file["VTKHDF/CellData/Region"][::6] = 1  # the first layer in x is the runner
            with h5py.File(project.file("box1.k4f"), "r+") as file:
                file["items/6"][:] = 200.0
            self.start(self.words(project, "x"), *options)
            with h5py.File(project.file("box1.fzr")) as file:
                lowest[options] = min(file[f"items/{item}"][:].min() for item in (2, 3, 4))
        self.assertAlmostEqual(lowest["--corrected",], 200.0, places=3)
        self.assertLess(lowest[()], 190.0, "in classic mode the runner's 0 reaches the gate")

    def test_later_times_tell_the_count_of_surface_nodes_when_corrected(self):
        counts = {}
        for options in ((), ("--corrected",)):
            project = SmallProject(self)
            result = self.start(self.words(project, "x"), "--log-level=1", "--intermediate-times=1", *options)
            counts[options] = [int(count) for count in re.findall(r"nSurfaceNodes = (\d+) \n", result.stdout)]
        self.assertEqual(counts["--corrected",], [130, 130])
        self.assertEqual(counts[()], [130, 0], "in classic mode they are marked already")

    def test_out_of_memory_is_an_exception_with_its_reason(self):
        """At every limit of the address space the run either ends well or says that memory ran out."""
        project = SmallProject(self, cells=(12, 8, 6))
        words = self.words(project, "x")
        self.start(words)
        whole = project.file("box1.fzr").read_bytes()
        limit = self.least_limit()
        codes = set()
        while NORMAL not in codes:
            project.file("box1.fzr").unlink(missing_ok=True)
            for search in (project.root / "Mesh").glob("*.sur"):
                search.unlink()
            result = self.limited(limit, words, "--threads=1")
            codes.add(result.returncode)
            self.assertIn(result.returncode, (NORMAL, EXCEPTION), f"{limit} bytes: {result.stdout}{result.stderr}")
            if result.returncode == NORMAL:
                self.assertEqual(project.file("box1.fzr").read_bytes(), whole)
            else:
                self.assertTrue(result.stdout.endswith("out of memory\n"), f"{limit} bytes: {result.stdout}")
            limit += MEMORY_STEP
        self.assertIn(EXCEPTION, codes)

    def limited(self, limit, words, *options):
        return run(
            *words,
            *options,
            program=QNL3DFROZENLAYER,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)),
        )

    def least_limit(self):
        """At which the program starts at all."""
        limit = MEMORY_STEP
        while self.limited(limit, [], "--version").returncode != 0:
            limit += MEMORY_STEP
        return limit

    def test_usage_errors(self):
        project = SmallProject(self)
        words = self.words(project, "x")
        for options in (["--unknown"], ["--threads=0"], ["--log-level=x"], ["--intermediate-times"], ["--corrected=1"]):
            with self.subTest(options=options):
                result = self.start(words, *options)
                self.assertEqual((result.returncode, result.stdout), (USAGE, ""))
                self.assertIn(options[0], result.stderr)
        self.assertEqual(self.start([]).returncode, USAGE)
        self.assertEqual(self.start(words[:1], "--log-level=2").returncode, USAGE)
        self.assertEqual(self.written(project), [])

    def test_help_and_version(self):
        result = self.start([], "--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("24, 48, 120", result.stdout)
        self.assertRegex(self.start([], "--version").stdout, r"^QNL3DFrozenLayer \d+\.\d+\.\d+\n$")

    def test_missing_material(self):
        project = SmallProject(self)
        (project.root / "Material/pp.toml").unlink()
        result = self.launch(self.words(project))
        self.assertEqual(result.returncode, MATERIAL)
        self.assertTrue(result.stdout.endswith("Read Material - Fail \n"), result.stdout)
        self.assertEqual(self.written(project), [])

    def test_missing_run_file_ends_at_the_material(self):
        project = SmallProject(self)
        project.file("box1.run").unlink()
        result = self.launch(self.words(project))
        self.assertEqual(result.returncode, MATERIAL)
        self.assertIn("Error 3302: *.run doesn't exist !\n", result.stdout)
        self.assertTrue(result.stdout.endswith("Read Material - Fail \n"), result.stdout)

    def test_missing_mesh(self):
        project = SmallProject(self)
        (project.root / "Mesh/box.hdf").unlink()
        result = self.launch(self.words(project))
        self.assertEqual(result.returncode, MESH)
        self.assertIn("box.hdf", result.stdout)

    def test_mesh_name_without_extension_is_an_exception_with_its_reason(self):
        project = SmallProject(self)
        project.file("box1.run").write_text(project.file("box1.run").read_text().replace("box.hdf", "box"))
        # The whole path must be without a dot, as the last one counts.
        words = ["part/Analysis/Run1/box1.k4f", "part", "box", "4", "1"]
        result = self.run_in(project.root.parent, self.launch, words)
        self.assertEqual(result.returncode, EXCEPTION)
        self.assertIn("invalid string position", result.stdout)

    def test_missing_marker_log_is_told_at_every_log_level(self):
        project = SmallProject(self, marker=False)
        result = self.launch(self.words(project))
        self.assertEqual(result.returncode, NORMAL)
        self.assertEqual(set(result.stdout.splitlines()), {"QNLIntermediateOutputTime.log doesn't exist !"})
        self.assertEqual(len(result.stdout.splitlines()), 2)

    def test_failed_stage_file_is_passed_over_silently(self):
        project = SmallProject(self)
        project.file("box1.k4f").write_bytes(project.file("box1.k4f").read_bytes()[:2000])
        result = self.launch(self.words(project))
        self.assertEqual((result.returncode, result.stdout, result.stderr), (NORMAL, "", ""))
        self.assertEqual(self.written(project), ["box1_001.fzr"])

    def test_the_probe_takes_a_stage_file_without_fibre_items(self):
        project = SmallProject(self)
        words = self.words(project, "x")
        result = run(*words, "--fibre-probe", program=QNL3DFROZENLAYER, input="0\n")
        self.assertEqual((result.returncode, result.stderr), (NORMAL, ""))
        self.assertIn("User input ID = 0\n", result.stdout)

    def test_an_item_of_the_wrong_type_is_passed_over(self):
        project = SmallProject(self)
        with h5py.File(project.file("box1.k4f"), "r+") as file:
            entries = 10 * len(file["items/6"])
            kept = dict(file["items/14"].attrs)
            del file["items/14"]
            item = file.create_dataset("items/14", data=np.ones(entries, "f4"))
            item.attrs.update(kept)
            item.attrs["data_type"] = np.int32(2)
            file.attrs["max_element"] = np.int32(entries)
        result = self.start(self.words(project, "x"))
        self.assertEqual((result.returncode, result.stdout, result.stderr), (NORMAL, "", ""))
        self.assertEqual(self.written(project), ["box1.fzr"])

    def test_level_one_tells_the_course_and_the_report(self):
        project = SmallProject(self)
        result = self.start(self.words(project), "--log-level=1", "--threads=2")
        self.assertEqual(result.returncode, NORMAL)
        place = 0
        for text in (
            "box1.run\n",
            "ReadMeshData Time: ",
            "nThread = 2\n",
            "Load Temperature Data\n",
            "Read Temperature Data end\n",
            "new CSurfNodeSearch\n",
            "ReadSearchResult Time: ",
            "Calcu Frozen From SurfaceNodeAndNormal end\n",
            "Smooth SurfaceNodeValue end\n",
            "SetOutputItermInfor end\n",
            "Write Binary Result\n",
            "Output Binary Data end\n",
            "OutputFrozenCalcuResults Time: ",
            "Write Search Result end \n",
            "free memory end\n",
            "CPUID: 0    -   \n",
            "Find PassElem Count: ",
            "CPUID: 1    -   \n",
            "Total Analysis Time: ",
        ):
            found = result.stdout.find(text, place)
            self.assertGreaterEqual(found, 0, f"{text!r} is missing behind position {place}\n{result.stdout}")
            place = found
        for text in ("new CSurfNodeSearch\n", "Write Search Result end \n"):
            self.assertEqual(result.stdout.count(text), 1, "the second time neither reads nor writes the search")
        self.assertEqual(result.stdout.count("free memory end\n"), 1)
        self.assertEqual(result.stdout.count("ReadSearchResult Time: "), 2)
        log = project.file("box1.lgz").read_text()
        self.assertIn("Total Analysis Time: ", log)
        self.assertTrue(project.file("box1_Sink.k4w").exists())


if __name__ == "__main__":
    unittest.main()
