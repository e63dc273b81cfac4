"""How idle threads wait: asleep, unless the environment says otherwise; and that asking starts nothing anew."""
import os
import re
import unittest

from small_project import FROZENLAYER, QNL3DFROZENLAYER, Folder, run

WORK = {FROZENLAYER: ("info", "nothing"), QNL3DFROZENLAYER: ("nothing.k4f", ".", "nothing", "4", "1", "x")}


class WaitingTest(unittest.TestCase):
    def policy(self, program, *words, **settings):
        """What the parallel runtime says of its settings, and how often the program began."""
        plain = {k: v for k, v in os.environ.items() if k not in ("OMP_WAIT_POLICY", "GOMP_SPINCOUNT")}
        result = run(
            *words,
            program=program,
            env={**plain, "OMP_DISPLAY_ENV": "verbose", **settings},
            cwd=Folder(self).path,
        )
        said = re.findall(r"(OMP_WAIT_POLICY|GOMP_SPINCOUNT) ?= ?'(\w+)'", result.stderr)
        return dict(said), len(said) // 2

    def test_threads_sleep(self):
        for program, words in WORK.items():
            with self.subTest(program=program):
                said, starts = self.policy(program, *words)
                self.assertEqual((said["OMP_WAIT_POLICY"], said["GOMP_SPINCOUNT"], starts), ("PASSIVE", "0", 2))

    def test_without_work_nothing_starts_anew(self):
        for program, asked in (
            (FROZENLAYER, ("--help", "--version", "help", "run --help", "run --thread 1", "runn", "")),
            (QNL3DFROZENLAYER, ("--help", "--version", "--ouch", "")),
        ):
            for line in asked:
                with self.subTest(program=program, words=line):
                    self.assertEqual(self.policy(program, *line.split())[1], 1)

    def test_the_environment_is_kept(self):
        for program, words in WORK.items():
            with self.subTest(program=program):
                said, starts = self.policy(program, *words, OMP_WAIT_POLICY="active")
                self.assertEqual((said["OMP_WAIT_POLICY"], starts), ("ACTIVE", 1))
                said, starts = self.policy(program, *words, GOMP_SPINCOUNT="7")
                self.assertEqual((said["GOMP_SPINCOUNT"], starts), ("7", 1))


if __name__ == "__main__":
    unittest.main()
