"""frozenlayer demo: the projects it writes, read back and run, and what it refuses."""
import os
import unittest

import h5py
import numpy

from small_project import Folder, run


class DemoTest(unittest.TestCase):
    def setUp(self):
        self.root = Folder(self).path / "demo"

    def demo(self, *words):
        result = run("demo", self.root, "--cells", 5000, *words)
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stderr)
        return result.stdout

    def file(self, name):
        return self.root / "Analysis/Run1" / name

    def test_flow_project_runs(self):
        self.assertIn("8 output times", self.demo("--shape", "plate"))
        with h5py.File(self.root / "Mesh/demo.hdf") as mesh, h5py.File(self.file("demo1_004.k4f")) as flow:
            points = mesh["VTKHDF/Points"][()]
            self.assertEqual((set(mesh["VTKHDF/Types"][()]), float(flow["time"].attrs["value"])), ({10}, 3.0))
            temperature = flow["items/6"][()]
        upper = points.max(axis=0)
        wall = numpy.any((points < 1e-9) | (points > upper - 1e-9), axis=1)
        self.assertLess(abs(temperature[wall] - 50.0).max(), 1e-4)
        core = (abs(points - upper / 2) < 1.1).all(axis=1)
        self.assertGreater(temperature[core].max(), 150.0)
        result = run("run", self.root)
        self.assertEqual(result.returncode, 0, result.stderr)
        frozen = []
        for name in [f"demo1_{index:03d}.fzr" for index in range(1, 8)] + ["demo1.fzr"]:
            with h5py.File(self.file(name)) as file:
                frozen.append(file["items/1"][()].mean())
        self.assertEqual(frozen, sorted(frozen))
        self.assertLess(frozen[0], 60.0)
        self.assertGreater(frozen[-1], 99.9)

    def test_stages_of_one_time(self):
        for stage, extension, result in (("cool", "k4c", "czr"), ("warp", "k4w", "wzr")):
            self.assertIn("1 output time ", self.demo("--stage", stage, "--shape", "ring", "--force"))
            names = sorted(path.name for path in self.file("").iterdir())
            self.assertEqual(names, [f"demo1.{extension}", "demo1.run"])
            run_result = run("run", self.root)
            self.assertEqual(run_result.returncode, 0, run_result.stderr)
            self.assertTrue(self.file(f"demo1.{result}").exists())

    def test_random_numbering_is_the_same_part(self):
        self.demo()
        with h5py.File(self.root / "Mesh/demo.hdf") as mesh:
            ordered = mesh["VTKHDF/Points"][()]
        self.demo("--shuffle", "--force")
        with h5py.File(self.root / "Mesh/demo.hdf") as mesh:
            shuffled = mesh["VTKHDF/Points"][()]
        self.assertFalse(numpy.array_equal(ordered, shuffled))
        self.assertEqual(sorted(map(tuple, ordered)), sorted(map(tuple, shuffled)))

    def test_existing_folder(self):
        self.root.mkdir()
        mine = self.root / "notes.txt"
        mine.write_text("mine")
        result = run("demo", self.root)
        self.assertEqual(result.returncode, 1)
        self.assertIn("exists: name another folder, or give --force", result.stderr)
        self.assertEqual([path.name for path in self.root.iterdir()], ["notes.txt"])
        self.demo("--force")
        self.assertEqual(mine.read_text(), "mine")

    def test_refusals(self):
        for words, text in (
            (("--cells", "100"), "not in range 2500"),
            (("--shape", "cube"), "cube not in"),
            (("--stage", "fill"), "fill not in"),
        ):
            result = run("demo", self.root, *words)
            self.assertEqual(result.returncode, 1)
            self.assertIn(text, result.stderr + result.stdout)
            self.assertFalse(self.root.exists())
        blocked = self.root.parent / "file"
        blocked.write_text("")
        result = run("demo", blocked, "--force")
        self.assertEqual(result.returncode, 1)
        self.assertIn("is no folder", result.stderr)
        result = run("demo", blocked / "below")
        self.assertEqual(result.returncode, 1)
        self.assertIn("cannot be made", result.stderr)

    @unittest.skipIf(os.name != "posix", "limits the size of files")
    def test_full_disk_leaves_nothing(self):
        import resource

        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))
        result = run("demo", self.root, "--cells", 3000, restore_signals=False, preexec_fn=limit)
        self.assertEqual((result.returncode, result.stderr.count("\n")), (1, 1), result.stderr)
        self.assertIn("Mesh/demo.hdf cannot be written", result.stderr)
        self.assertIn("; check the space and the rights there", result.stderr)
        self.assertFalse(self.root.exists())


if __name__ == "__main__":
    unittest.main()
