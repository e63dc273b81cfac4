"""The help of every subcommand: its sections, and its worked example, which must run as it stands."""
import unittest

from foreign_files import READERS_ARE_BUILT_IN
from manual_page import SUBCOMMANDS, ManualPage
from small_project import ExamplesFolder, run

NEED_READERS = ("import", "show")


class HelpTest(unittest.TestCase):
    def test_program(self):
        self.assertEqual(len(SUBCOMMANDS), 9)
        self.assertEqual(
            set(ManualPage().sections),
            {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "SUBCOMMANDS", "EXAMPLE", "EXIT STATUS"},
        )
        self.assertRegex(run("--version").stdout, r"^frozenlayer \d+\.\d+\.\d+\n$")

    def test_sections_of_every_subcommand(self):
        for name in SUBCOMMANDS:
            with self.subTest(subcommand=name):
                page = ManualPage(name)
                self.assertEqual(
                    list(page.sections),
                    ["NAME", "SYNOPSIS", "DESCRIPTION", "ARGUMENTS", "OPTIONS", "EXAMPLE", "EXIT STATUS"],
                )
                self.assertTrue(page.sections["SYNOPSIS"].startswith(f"  frozenlayer {name} "))
                self.assertIn(
                    "0 success, 130 interrupted, 143 ended by request, 1 otherwise", page.sections["EXIT STATUS"]
                )
                self.assertIn("24, 48,\n  120", page.sections["EXIT STATUS"])
                self.assertIn(f"frozenlayer {name} ", page.sections["EXAMPLE"])

    def test_worked_examples_run(self):
        folder = ExamplesFolder(self)
        done_before = set()
        for name in SUBCOMMANDS:
            if name in NEED_READERS and not READERS_ARE_BUILT_IN:
                continue
            with self.subTest(subcommand=name):
                for command in ManualPage(name).example():
                    if command in done_before:
                        continue
                    done_before.add(command)
                    done = folder.shell(command)
                    self.assertEqual(done.returncode, 0, f"{command}\n{done.stderr}")
                    self.assertTrue(done.stdout)

    def test_help_is_a_word_too(self):
        for words, option in ((("help",), ("--help",)), (("help", "run"), ("run", "--help"))):
            asked = run(*words)
            self.assertEqual((asked.returncode, asked.stdout), (0, run(*option).stdout))

    def test_misuse_names_the_word(self):
        for words, text in (
            (("runn",), '"runn" is no subcommand, run is one;'),
            (("run", "--thread", "1"), "--thread, --threads is one;"),
            (("--shape",), '"--shape" is no subcommand'),
            (("demo", "x", "--ouch"), "--ouch"),
            ((), "A subcommand is required"),
        ):
            result = run(*words)
            self.assertEqual(result.returncode, 1)
            self.assertIn(text, result.stderr)
            self.assertIn("--help", result.stderr)
            self.assertEqual(result.stderr.count("\n"), 1)


if __name__ == "__main__":
    unittest.main()
