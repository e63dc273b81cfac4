"""The fibre probe with typed node labels, through a pseudo-terminal and through a pipe: the same text, and each
label is probed before it is tested, so the one that ends the loop is probed too."""

import os
import pty
import re
import shutil
import subprocess
import tempfile
import unittest

from referee.cases import Case
from referee.write_mesh import Block
from referee.write_project import write_project

PROGRAM = os.environ.get("QNL3DFROZENLAYER", "")
PROMPT = "\n Please input node ID, <0 exit()  \n"
SUCCESS = 1


class TypedLabels(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        case = Case("typed", stage=".k4o", block=Block(labels=False), fibre=True, material="flake")
        project, self.stage = write_project(case, self.folder)
        self.arguments = [PROGRAM, self.stage, project, "part", str(case.code), case.run, "x", "--fibre-probe"]

    def piped(self, typed):
        done = subprocess.run(self.arguments, input=typed, capture_output=True, text=True, timeout=60)
        self.assertEqual(done.returncode, SUCCESS)
        return done.stdout

    def on_a_terminal(self, typed):
        ours, theirs = pty.openpty()
        process = subprocess.Popen(self.arguments, stdin=theirs, stdout=subprocess.PIPE)
        os.close(theirs)
        os.write(ours, typed.encode())
        output = process.communicate(timeout=60)[0].decode()
        os.close(ours)
        self.assertEqual(process.returncode, SUCCESS)
        return output

    def csv(self):
        with open(self.stage[: self.stage.rindex(".")] + ".csv") as file:
            return file.read()

    def test_the_last_label_is_probed_before_it_ends_the_loop(self):
        output = self.piped("1\n2\n0\n3\n")
        self.assertIn("Node id file  for fiber does't exist!\n", output)
        self.assertEqual(re.findall(r"User input ID = (-?\d+)\n", output), ["1", "2", "0"])
        self.assertEqual(output.count(PROMPT), 3)
        self.assertIn("GbID = 0, Node X = 0.000000, Y= 0.000000 ,Z= 0.000000\n", output)
        self.assertEqual(re.findall(r"\nID, (-?\d+)\n", self.csv()), ["1", "2", "0"])

    def test_a_label_out_of_range_and_text_end_the_loop(self):
        self.assertEqual(re.findall(r"User input ID = (-?\d+)\n", self.piped("1\n99999999\n2\n")), ["1", "99999999"])
        self.assertEqual(re.findall(r"User input ID = (-?\d+)\n", self.piped("1\nnone\n2\n")), ["1"])
        self.assertEqual(re.findall(r"User input ID = (-?\d+)\n", self.piped("2\n")), ["2"])

    def test_a_terminal_gives_what_a_pipe_gives(self):
        piped, csv = self.piped("1\n5\n-1\n"), self.csv()
        self.assertEqual(self.on_a_terminal("1\n5\n-1\n"), piped)
        self.assertEqual(self.csv(), csv)


if __name__ == "__main__":
    unittest.main()
