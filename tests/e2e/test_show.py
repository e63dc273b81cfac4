"""frozenlayer show: from the files of another program to the page, in one command."""
import unittest

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from small_project import Folder, run


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
class ShowTest(unittest.TestCase):
    def setUp(self):
        self.folder = Folder(self).path
        points, hexas = foreign.box()
        self.names = []
        for seconds in (1.0, 2.0):
            name = self.folder / f"t{seconds:g}.vtu"
            foreign.write_vtu(name, points, hexas, {"T": 180.0 / seconds + 60.0 * points[:, 2]}, seconds=seconds)
            self.names.append(name)
        self.page = self.folder / "report.html"
        self.temporary = self.folder / "tmp"
        self.temporary.mkdir()

    def show(self, *words):
        return run(
            "show",
            *words,
            "--freeze-temperature",
            130,
            "--out",
            self.page,
            env={"TMPDIR": str(self.temporary), "PATH": ""},
        )

    def test_temporary_project_goes(self):
        result = self.show(*self.names)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn(f"Page written:\n  {self.page}\n", result.stdout)
        self.assertIn("Output time 2 s", result.stdout)
        self.assertIn("The project was temporary; --keep FOLDER keeps its files", result.stdout)
        self.assertIn("<html", self.page.read_text()[:1000])
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_kept_project_shows_the_same_page_again(self):
        kept = self.folder / "kept"
        result = self.show(*self.names, "--keep", kept)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue((kept / "Analysis/Run1/kept1_001.fzr").is_file())
        again = self.folder / "again.html"
        self.assertEqual(run("view", kept, "--out", again).returncode, 0)
        self.assertEqual(again.stat().st_size, self.page.stat().st_size)

    def test_places_of_the_page(self):
        """They are looked at before the work is done."""
        for page, text in (
            (self.folder / "none/report.html", "none is no folder: make it first"),
            (self.folder / "report.pdf", "end it in .html"),
        ):
            self.page = page
            result = self.show(*self.names)
            self.assertEqual((result.returncode, result.stdout), (1, ""))
            self.assertIn(text, result.stderr)

    def test_refusal_leaves_nothing(self):
        result = self.show(self.folder / "none.vtu")
        self.assertEqual(result.returncode, 1)
        self.assertIn("none.vtu is missing", result.stderr)
        self.assertFalse(self.page.exists())
        self.assertEqual(list(self.temporary.iterdir()), [])


if __name__ == "__main__":
    unittest.main()
