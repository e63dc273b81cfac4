"""The help of frozenlayer, taken apart."""
import re

from small_project import run


class ManualPage:
    """`words`: the subcommand; none for the program itself."""

    def __init__(self, *words):
        self.text = run(*words, "--help").stdout
        parts = re.split(r"^([A-Z][A-Z ]+)\n", self.text, flags=re.M)
        self.sections = dict(zip(parts[1::2], parts[2::2]))

    def options(self):
        """Long name -> what its value is called; empty for a flag."""
        line = re.compile(r"^  (-[\w-]+(?:, -[\w-]+)*)(?: (\S+))?(?: \.\.\.)?$", re.M)
        found = {}
        for names, value in line.findall(self.sections["OPTIONS"]):
            found.update({name: value for name in names.split(", ") if name.startswith("--")})
        return found

    def subcommands(self):
        return re.findall(r"^ +(\w+)  ", self.sections["SUBCOMMANDS"], re.M)

    def example(self):
        return [line.strip() for line in self.sections["EXAMPLE"].strip().splitlines()]


SUBCOMMANDS = ManualPage().subcommands()
