"""What an interrupted command leaves: an exit code of shells, a sentence, and nothing half done."""
import os
import pathlib
import signal
import subprocess
import unittest

from foreign_files import READERS_ARE_BUILT_IN
from small_project import EXAMPLES, FROZENLAYER, Folder


class InterruptTest(unittest.TestCase):
    def setUp(self):
        self.folder = Folder(self)
        self.temporary = self.folder.path / "tmp"
        self.temporary.mkdir()

    def start(self, *words, **options):
        return subprocess.Popen(
            [FROZENLAYER, *map(str, words)],
            stderr=subprocess.PIPE,
            encoding="utf-8",
            env={**os.environ, "TMPDIR": str(self.temporary)},
            **options,
        )

    def interrupt(self, number, *words):
        """Sends the signal when the first output time is done; gives the exit code and both texts."""
        with self.start(*words, stdout=subprocess.PIPE) as program:
            said = ""
            while "(1 of " not in said:
                line = program.stderr.readline()
                self.assertTrue(line, said)
                said += line
            program.send_signal(number)
            printed, rest = program.communicate(timeout=60)
        return program.returncode, printed, said + rest

    def test_run(self):
        project = self.folder.copy_example("stepped-plate")
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
            with self.subTest(code=code):
                status, printed, said = self.interrupt(number, "run", project, "--threads", 1)
                self.assertEqual(status, code)
                self.assertRegex(said, r"\nfrozenlayer: interrupted: .*\n\Z")
                self.assertNotIn("memory", said)
                written = [pathlib.Path(line.strip()) for line in printed.split("Files written:\n")[1].splitlines()]
                self.assertTrue(all(path.exists() for path in written), written)
                there = sorted(path for path in (project / "Analysis/Run1").glob("*.fzr*"))
                self.assertEqual(there, [project / "Analysis/Run1/plate1.fzr"])
                for path in written:
                    path.unlink()

    @unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
    def test_show_leaves_no_temporary_folder(self):
        page = self.folder.path / "page.html"
        material = EXAMPLES / "stepped-plate/Material/pp.toml"
        series = EXAMPLES / "stepped-plate-vtu/b.pvd"
        status, _, said = self.interrupt(signal.SIGINT, "show", series, "--material", material, "--out", page)
        self.assertEqual(status, 130, said)
        self.assertEqual(list(self.temporary.iterdir()), [])
        self.assertFalse(page.exists())

    def test_closed_pipe(self):
        project = self.folder.copy_example("stepped-plate")
        reading, writing = os.pipe()
        os.close(reading)
        with self.start("run", project, "--corrected", stdout=writing) as program:
            os.close(writing)
            _, said = program.communicate(timeout=60)
        self.assertEqual(program.returncode, 1)
        self.assertIn("standard output cannot be written", said)
        self.assertEqual(len(list((project / "Analysis/Run1").glob("*.fzr"))), 9)


if __name__ == "__main__":
    unittest.main()
