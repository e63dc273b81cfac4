"""The bash completion offers exactly the subcommands, options and words that the program's own help names."""
import os
import pathlib
import shlex
import shutil
import subprocess
import unittest

from manual_page import SUBCOMMANDS, ManualPage
from small_project import Folder

SCRIPT = pathlib.Path(os.environ["QNL_EXAMPLES"]).parent / "apps/frozenlayer/completion/frozenlayer.bash"
FILE_VALUES = {"FILE", "FOLDER", "FILE.html", "FILE.csv", "NAME"}
BASH = shutil.which("bash")


@unittest.skipUnless(BASH, "no bash here")
class CompletionTest(unittest.TestCase):
    def setUp(self):
        self.folder = Folder(self).path
        (self.folder / "series one.pvd").write_text("")
        (self.folder / "plate").mkdir()
        self.files = ["plate", "series one.pvd"]

    def offered(self, *words):
        """What Tab offers behind these words, the last of which is being typed."""
        line = " ".join(shlex.quote(word) for word in ("frozenlayer", *words))
        script = (
            f"source {shlex.quote(str(SCRIPT))}; COMP_WORDS=({line}); COMP_CWORD={len(words)}; _frozenlayer; "
            "printf '%s\\n' \"${COMPREPLY[@]}\""
        )
        done = subprocess.run(
            [BASH, "--norc", "-c", script], cwd=self.folder, capture_output=True, text=True, timeout=60, check=True
        )
        self.assertEqual(done.stderr, "")
        return sorted(done.stdout.splitlines()) if done.stdout != "\n" else []

    def test_subcommands(self):
        self.assertEqual(self.offered(""), sorted(SUBCOMMANDS))
        self.assertEqual(self.offered("-"), sorted(ManualPage().options()))
        self.assertEqual(self.offered("in"), ["info"])

    def test_options(self):
        for name in SUBCOMMANDS:
            with self.subTest(subcommand=name):
                self.assertEqual(self.offered(name, "-"), sorted(ManualPage(name).options()))

    def test_values(self):
        for name in SUBCOMMANDS:
            for option, value in ManualPage(name).options().items():
                expected = (
                    self.files
                    if value in FILE_VALUES or value == ""
                    else sorted(set(value.split("|")) - {"N"})
                    if "|" in value
                    else []
                )
                with self.subTest(subcommand=name, option=option, value=value):
                    self.assertEqual(self.offered(name, option, ""), expected)
                    if value:
                        self.assertEqual(self.offered(name, option, "="), expected)

    def test_begun_words(self):
        self.assertEqual(self.offered("import", "--length-unit", "m"), ["m", "mm"])
        self.assertEqual(self.offered("import", "--length-unit", "=", "i"), ["in"])
        self.assertEqual(self.offered("import", "series one.pvd", "--out", "pl"), ["plate"])
        self.assertEqual(self.offered("show", "ser"), ["series one.pvd"])
        self.assertEqual(self.offered("nothing", "--"), [])

    def test_the_shell_knows_the_function(self):
        done = subprocess.run(
            [BASH, "--norc", "-c", f"source {shlex.quote(str(SCRIPT))}; complete -p frozenlayer"],
            capture_output=True,
            text=True,
            timeout=60,
            check=True,
        )
        self.assertEqual(done.stdout, "complete -o filenames -F _frozenlayer frozenlayer\n")


if __name__ == "__main__":
    unittest.main()
