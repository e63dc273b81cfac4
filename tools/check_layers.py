#!/usr/bin/env python3
"""Checks which folder includes which: src/ sees only itself and include/platform, include/platform sees only
itself, and the folders of src/ depend on each other in one direction."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# What each folder of src/ may include besides its own headers and the job context.
CONTEXT = {"job/FrozenLayerJob.h", "job/Messages.h", "job/WindowsPath.h", "job/RunOptions.h", "job/OneBased.h", "job/OwnedArray.h",
           "job/Assert.h", "job/TokenReader.h", "job/FixedText.h", "job/RelaxedValue.h", "output/OutputItem.h",
           "profile/CSurfNodeSearch.h"}
ALLOWED = {
    "mesh": set(),
    "input": {"mesh"},
    "profile": {"mesh"},
    "output": set(),
    "probe": {"mesh", "profile"},
    "frozen": {"mesh", "profile", "probe", "output"},
    "job": {"mesh", "input", "profile", "frozen", "output", "probe"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def includes(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8"))


def check_src():
    for path in sorted((ROOT / "src").rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        own = path.relative_to(ROOT / "src").parts[0]
        for header in includes(path):
            folder = header.split("/")[0]
            fine = (header in CONTEXT or folder == own or folder in ALLOWED[own] or
                    (folder == "platform" and (ROOT / "include" / header).is_file()))
            if not fine:
                yield f"{path.relative_to(ROOT)} includes \"{header}\""


def check_platform_declarations():
    for path in sorted((ROOT / "include").rglob("*.h")):
        for header in includes(path):
            if not (ROOT / "include" / header).is_file():
                yield f"{path.relative_to(ROOT)} includes \"{header}\""


def main():
    faults = list(check_src()) + list(check_platform_declarations())
    for fault in faults:
        print(f"layer broken: {fault}")
    print(f"layers: {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
