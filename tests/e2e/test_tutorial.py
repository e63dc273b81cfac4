"""docs/tutorial.md: its commands run in order, and their outputs hold the lines that it shows."""
import os
import re
import unittest

from foreign_files import READERS_ARE_BUILT_IN
from small_project import EXAMPLES, ExamplesFolder

TUTORIAL = EXAMPLES.parent / "docs/tutorial.md"


def steps(text):
    """(command, the lines shown behind it) in order; the lines of several blocks of commands are one list."""
    found = []
    for kind, body in re.findall(r"^```(\w+)\n(.*?)^```$", text, re.M | re.S):
        if kind == "sh":
            found += [(command, []) for command in body.splitlines()]
        else:
            found[-1][1].extend(body.splitlines())
    return found


def missing_line(shown, output):
    """The first line shown that the output does not hold behind the one before; "..." skips, else they follow."""
    words = lambda line: line.split()
    lines = iter(words(line) for line in output.splitlines() if line.strip())
    free = True
    for line in (line for line in shown if line.strip()):
        if line == "...":
            free = True
            continue
        for found in lines:
            if found == words(line):
                break
            if not free:
                return line
        else:
            return line
        free = False
    return None


@unittest.skipUnless(READERS_ARE_BUILT_IN and os.name == "posix", "needs VTK and a shell")
class TutorialTest(unittest.TestCase):
    def test_commands_and_outputs(self):
        folder = ExamplesFolder(self)
        commands = steps(TUTORIAL.read_text(encoding="utf-8"))
        subcommands = {command.split()[1] for command, _ in commands if command.startswith("frozenlayer ")}
        self.assertEqual(subcommands, {"import", "info", "run", "export", "probe", "view", "show"})
        for command, shown in commands:
            done = folder.shell(command)
            self.assertEqual(done.returncode, 0, f"{command}\n{done.stderr}")
            self.assertTrue(shown, command)
            self.assertIsNone(missing_line(shown, done.stderr + done.stdout), command)

    def test_a_line_that_differs_is_found(self):
        self.assertIsNone(missing_line(["a 1", "...", "c  3"], "a 1\nb 2\nc 3\n"))
        self.assertEqual(missing_line(["a 1", "c 3"], "a 1\nb 2\nc 3\n"), "c 3")
        self.assertEqual(missing_line(["...", "c 4"], "a 1\nb 2\nc 3\n"), "c 4")


if __name__ == "__main__":
    unittest.main()
