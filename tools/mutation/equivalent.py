"""The list of mutants that no test can tell from the original.

One a line: file | line of the source | mutation | reason. The first three are written as the report gives them.
"""
from project import ProjectError

SEPARATOR = " | "


def read_equivalent(path):
    """Lines of the list; none when there is no list."""
    if not path.exists():
        return []
    lines = [line.strip() for line in path.read_text(encoding="utf-8").splitlines()]
    entries = [line for line in lines if line and not line.startswith("#")]
    for entry in entries:
        if entry.count(SEPARATOR) < 3:
            raise ProjectError(f'{path}: expected "file | line of the source | mutation | reason", found "{entry}"')
    return entries


def beginnings(entry):
    """What an entry may name: all but the reason. Source text may contain the separator."""
    parts = entry.split(SEPARATOR)
    return [SEPARATOR.join(parts[:count]) for count in range(3, len(parts))]


def take_out(mutants, entries):
    """(mutants not in the list, entries of no mutant)."""
    named = {beginning: entry for entry in entries for beginning in beginnings(entry)}
    left = [mutant for mutant in mutants if mutant.entry not in named]
    used = {named[mutant.entry] for mutant in mutants if mutant.entry in named}
    return left, [entry for entry in entries if entry not in used]
