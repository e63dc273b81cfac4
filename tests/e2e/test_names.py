"""Names that people give their files: they stay in projects and pages, and in commands that work when pasted."""
import os
import pathlib
import re
import shutil
import subprocess
import unittest

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from result_page import ResultPage
from small_project import FROZENLAYER, Folder, SmallProject, run

BASH = shutil.which("bash")


@unittest.skipUnless(BASH, "no bash here")
class NamesTest(unittest.TestCase):
    def setUp(self):
        self.folder = Folder(self).path

    def paste(self, command, folder=None):
        """A printed command, in a shell that finds the program."""
        return subprocess.run(
            [BASH, "--norc", "-c", command],
            cwd=folder or self.folder,
            env={**os.environ, "PATH": f"{pathlib.Path(FROZENLAYER).parent}:{os.environ['PATH']}"},
            capture_output=True,
            encoding="utf-8",
            timeout=300,
            check=False,
        )

    def write_box(self, name):
        points, hexas = foreign.box()
        foreign.write_vtu(self.folder / name, points, hexas, {"temperature": 60.0 + 90.0 * points[:, 2]}, seconds=1.0)

    @unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
    def test_import_and_what_it_says_next(self):
        for name in ("Gehäuse 3", "外壳", "it's $HOME & more", "-x"):
            with self.subTest(name=name):
                self.write_box(f"{name}.vtu")
                words = (f"./{name}.vtu", f"--out={name}", "--freeze-temperature", 130)
                made = run("import", *words, cwd=self.folder)
                self.assertEqual(made.returncode, 0, made.stderr)
                done = self.paste(re.search(r"^Next: (.*)$", made.stdout, re.M).group(1))
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertEqual(len(list((self.folder / name / "Analysis/Run1").glob("*.fzr"))), 1)
        self.assertTrue((self.folder / "Gehäuse 3/Analysis/Run1/Gehäuse 31.fzr").exists())
        self.assertTrue((self.folder / "Gehäuse 3/Mesh/Gehäuse 3.hdf").exists())

    @unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
    def test_the_page_has_the_name_of_the_file(self):
        self.write_box("Gehäuse 3.vtu")
        shown = run(
            *("show", self.folder / "Gehäuse 3.vtu", "--freeze-temperature", 130, "--out", self.folder / "page.html")
        )
        self.assertEqual(shown.returncode, 0, shown.stderr)
        self.assertEqual(ResultPage(self.folder / "page.html").header["title"], "Gehäuse 3")

    def test_demo_and_what_it_says_next(self):
        made = run("demo", "--cells", 2500, "--shape", "plate", "my parts", cwd=self.folder)
        self.assertEqual(made.returncode, 0, made.stderr)
        done = self.paste(re.search(r"^Evaluate it with: (.*)$", made.stdout, re.M).group(1))
        self.assertEqual(done.returncode, 0, done.stderr)

    def test_projects_that_are_named_so(self):
        """Folders with blanks and other letters are run, exported and shown."""
        project = SmallProject(self)
        root = project.root.rename(project.root.parent / "Gehäuse 3 (neu)")
        for words in (("run",), ("export", "--out", root / "fläche 1"), ("view", "--out", root / "Seite 1.html")):
            done = run(words[0], root, *words[1:])
            self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue((root / "fläche 1.pvd").exists() and (root / "Seite 1.html").exists())


if __name__ == "__main__":
    unittest.main()
