"""What an interrupted command leaves: an exit code of shells, a sentence, and nothing half done."""
import os
import pathlib
import re
import signal
import subprocess
import time
import unittest

from foreign_files import READERS_ARE_BUILT_IN
from small_project import EXAMPLES, FROZENLAYER, MATERIAL, Folder, SmallProject, run


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
            while not re.search(r"\(1 of .*evaluated in", said):
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

    def stop_at_pipe(self, pipe, mode, number, *words):
        """Sends the signal while the program waits at a pipe, which is then read, or given `MATERIAL`; gives the exit
        code and both texts."""
        os.mkfifo(pipe)
        with self.start(*words, stdout=subprocess.PIPE) as program:
            with open(pipe, mode) as end:  # returns when the program has opened its end
                program.send_signal(number)
                time.sleep(0.1)
                end.read() if mode == "rb" else end.write(MATERIAL.encode())
            printed, said = program.communicate(timeout=60)
        pipe.unlink()
        return program.returncode, printed, said

    def evaluated_box(self):
        project = SmallProject(self, cells=(24, 20, 2))
        done = run("run", project.root, "--corrected")
        self.assertEqual(done.returncode, 0, done.stderr)
        return project.root

    def test_export(self):
        """The second file is a pipe that holds less than one file: the first is finished and told."""
        root = self.evaluated_box()
        for to, ending in (("csv", ".csv"), ("pvd", ".vtp"), ("hdf", ".hdf")):
            for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
                with self.subTest(format=to, code=code):
                    pipe = root / f"out_0002{ending}"
                    words = ("export", root, "--to", to, "--out", root / "out", "--force")
                    status, printed, said = self.stop_at_pipe(pipe, "rb", number, *words)
                    self.assertEqual(status, code, said)
                    self.assertRegex(said, r"\Afrozenlayer: interrupted: .*\n\Z")
                    first = root / f"out_0001{ending}"
                    told = printed.split("Files written:\n")[1].split()
                    self.assertEqual(told[0], str(first))
                    self.assertEqual(
                        {path.name for path in root.glob("out*")}, {pathlib.Path(p).name for p in told} - {pipe.name}
                    )
                    self.assertEqual(list(root.glob("~*")), [])
                    first.unlink()

    def test_view(self):
        root = self.evaluated_box()
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
            page = root / "page.html"
            status, printed, said = self.stop_at_pipe(page, "rb", number, "view", root, "--out", page)
            self.assertEqual((status, printed), (code, ""), said)
            self.assertRegex(said, r"\Afrozenlayer: interrupted: .*\n\Z")

    @unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
    def test_import(self):
        series = EXAMPLES / "stepped-plate-vtu/b.pvd"
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
            words = ("import", series, "--out", self.folder.path / "plate", "--material", self.folder.path / "pp.toml")
            status, printed, said = self.stop_at_pipe(self.folder.path / "pp.toml", "wb", number, *words)
            self.assertEqual((status, printed), (code, ""), said)
            self.assertRegex(said, r"\Afrozenlayer: interrupted: .*\n\Z")
            self.assertEqual(list(self.folder.path.iterdir()), [self.temporary])

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

    def test_closed_pipe_of_files_that_are_written(self):
        """They are there and whole; that they could not be told is a fault."""
        root = self.evaluated_box()
        commands = [("export", root, "--out", root / "out"), ("view", root, "--out", root / "page.html")]
        if READERS_ARE_BUILT_IN:
            series = EXAMPLES / "stepped-plate-vtu/b.pvd"
            commands.append(("import", series, "--out", root / "new", "--freeze-temperature", 130))
        for words in commands:
            reading, writing = os.pipe()
            os.close(reading)
            with self.subTest(words=words), self.start(*words, stdout=writing) as program:
                os.close(writing)
                _, said = program.communicate(timeout=60)
                self.assertEqual(program.returncode, 1)
                self.assertIn("standard output cannot be written", said)
        self.assertTrue((root / "out.pvd").exists() and (root / "page.html").exists())
        self.assertEqual((root / "new/Mesh/new.hdf").exists(), READERS_ARE_BUILT_IN)


if __name__ == "__main__":
    unittest.main()
