#!/usr/bin/env python3
"""Checks that every rule in docs/conformance.md names at least one test and that every test named there exists."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LEAST_RULES = 80
UNIT_TEST = re.compile(r"^\s*(?:TEST|TEST_F|TEST_P|TYPED_TEST)\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.M)
END_TO_END_TEST = re.compile(r"^\s+def (test_\w+)\(", re.M)
NAME = re.compile(r"`([^`]+)`")


def existing_tests():
    found = set()
    for path in (ROOT / "tests").rglob("*.cpp"):
        found |= {".".join(pair) for pair in UNIT_TEST.findall(path.read_text(encoding="utf-8"))}
    for path in (ROOT / "tests").rglob("*.py"):
        found |= {f"{path.stem}.{name}" for name in END_TO_END_TEST.findall(path.read_text(encoding="utf-8"))}
    return found


def documented_rules():
    """Pairs of a rule and the names of its tests."""
    for line in (ROOT / "docs/conformance.md").read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if line.startswith("|") and cells[0] not in ("rule", "---"):
            yield cells[0], NAME.findall(cells[-1]) if len(cells) == 2 else []


def main():
    tests = existing_tests()
    rules = list(documented_rules())
    faults = [f"no test named: {rule}" for rule, names in rules if not names]
    faults += [f"no such test: {name} ({rule})" for rule, names in rules for name in names if name not in tests]
    for fault in faults:
        print(fault)
    print(f"conformance: {len(rules)} rules, {len(tests)} tests, {len(faults)} faults")
    return 1 if faults or len(rules) < LEAST_RULES else 0


if __name__ == "__main__":
    sys.exit(main())
