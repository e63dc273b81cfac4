"""What the install rules put into a prefix works from there."""
import os
import subprocess
import unittest

from small_project import Folder, run

BUILD = os.environ["QNL_BUILD"]
PROGRAMS = ("QNL3DFrozenLayer", "frozenlayer")


@unittest.skipIf(os.name != "posix", "the page is found by way of /proc")
class InstallTest(unittest.TestCase):
    def setUp(self):
        self.prefix = Folder(self).path / "usr"
        subprocess.run(
            [os.environ["QNL_CMAKE"], "--install", BUILD, "--prefix", str(self.prefix)],
            check=True,
            capture_output=True,
            timeout=300,
        )
        self.program = self.prefix / "bin/frozenlayer"

    def installed(self, *words):
        result = run(*words, program=self.program, cwd=self.prefix, env={"PATH": "", "OMP_WAIT_POLICY": "passive"})
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def test_files(self):
        found = sorted(str(path.relative_to(self.prefix)) for path in self.prefix.rglob("*") if path.is_file())
        self.assertEqual(
            found,
            sorted(
                [f"bin/{name}" for name in PROGRAMS]
                + [
                    "share/bash-completion/completions/frozenlayer",
                    "share/frozenlayer/LICENSES.txt",
                    "share/frozenlayer/viewer.html",
                ]
            ),
        )
        for name in PROGRAMS:
            self.assertTrue(os.access(self.prefix / "bin" / name, os.X_OK))

    def test_road_from_the_prefix(self):
        """The page comes from the prefix, not from the source: the mark put into the installed one is in it."""
        template = self.prefix / "share/frozenlayer/viewer.html"
        template.write_text(template.read_text(encoding="utf-8") + "<!-- from the prefix -->", encoding="utf-8")
        self.assertIn("Wrote a plate", self.installed("demo", "part", "--shape", "plate", "--cells", 3000))
        self.assertIn("part/Analysis/Run1/demo1.fzr", self.installed("run", "part"))
        self.installed("view", "part", "--out", "page.html")
        page = (self.prefix / "page.html").read_text(encoding="utf-8")
        self.assertTrue(page.endswith("<!-- from the prefix -->"))
        self.assertIn('id="qnl-header"', page)

    def test_a_page_that_is_damaged_is_named(self):
        (self.prefix / "share/frozenlayer/viewer.html").write_text("nothing")
        self.installed("demo", "part", "--shape", "plate", "--cells", 3000)
        self.installed("run", "part")
        result = run("view", "part", "--out", "page.html", program=self.program, cwd=self.prefix)
        self.assertEqual(result.returncode, 1)
        self.assertIn("share/frozenlayer/viewer.html is not the results page", result.stderr)
        self.assertFalse((self.prefix / "page.html").exists())

    def test_the_console_program_starts(self):
        result = run("--version", program=self.prefix / "bin/QNL3DFrozenLayer")
        self.assertEqual((result.returncode, result.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
