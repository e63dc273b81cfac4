#!/usr/bin/env python3
"""Checks that docs/interface-names.md names every data member of the job context and of the mesh kernel, and no
member that does not exist."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADERS = ["src/context/FrozenLayerJob.h", "include/platform/CQNLOptKer.h"]
MEMBER = re.compile(r"\b([mp]_[A-Za-z0-9]+)(?:\[[\w:]+\])?\s*(?:=[^;]*|\{[^;]*\})?;")
CODE = re.compile(r"`([mp]_[A-Za-z0-9]+)`")


def without_comments(text):
    return re.sub(r"//.*", "", text)


def main():
    members = set()
    for header in HEADERS:
        members |= set(MEMBER.findall(without_comments((ROOT / header).read_text(encoding="utf-8"))))
    documented = set(CODE.findall((ROOT / "docs/interface-names.md").read_text(encoding="utf-8")))
    missing, unknown = sorted(members - documented), sorted(documented - members)
    for name in missing:
        print(f"not documented: {name}")
    for name in unknown:
        print(f"documented, but no such member: {name}")
    print(f"names: {len(members)} members, {len(missing)} missing, {len(unknown)} unknown")
    return 1 if missing or unknown or len(members) < 100 else 0


if __name__ == "__main__":
    sys.exit(main())
