"""How idle threads wait: asleep, unless the environment says otherwise."""
import os
import re
import unittest

from small_project import FROZENLAYER, QNL3DFROZENLAYER, run


class WaitingTest(unittest.TestCase):
    def policy(self, program, **settings):
        """What the parallel runtime says of its settings when the program begins to work."""
        plain = {k: v for k, v in os.environ.items() if k not in ("OMP_WAIT_POLICY", "GOMP_SPINCOUNT")}
        result = run("--version", program=program, env={**plain, "OMP_DISPLAY_ENV": "verbose", **settings})
        self.assertEqual(result.returncode, 0, result.stderr)
        said = re.findall(r"(OMP_WAIT_POLICY|GOMP_SPINCOUNT) ?= ?'(\w+)'", result.stderr)
        return dict(said), len(said) // 2

    def test_threads_sleep(self):
        for program in (FROZENLAYER, QNL3DFROZENLAYER):
            with self.subTest(program=program):
                said, starts = self.policy(program)
                self.assertEqual((said["OMP_WAIT_POLICY"], said["GOMP_SPINCOUNT"], starts), ("PASSIVE", "0", 2))

    def test_the_environment_is_kept(self):
        for program in (FROZENLAYER, QNL3DFROZENLAYER):
            with self.subTest(program=program):
                said, starts = self.policy(program, OMP_WAIT_POLICY="active")
                self.assertEqual((said["OMP_WAIT_POLICY"], starts), ("ACTIVE", 1))
                said, starts = self.policy(program, GOMP_SPINCOUNT="7")
                self.assertEqual((said["GOMP_SPINCOUNT"], starts), ("7", 1))


if __name__ == "__main__":
    unittest.main()
