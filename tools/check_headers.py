#!/usr/bin/env python3
"""Compiles headers alone, so that each includes what it uses.

    cmake --preset release && tools/check_headers.py [--all] [build/release]

A header that a source of its folder includes before anything else is compiled alone by the build; without --all it
is passed over here. Takes the options of a source of the same library from the build's compile_commands.json.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREES = ("include", "src", "platform", "interop", "apps", "tests/support")


def commands(build):
    """Directory of a source -> (working directory, compiler and options without source and output)."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        words = shlex.split(entry["command"])
        words = [word for word in words if word != "ccache"]
        for option in ("-o", "-c"):
            if option in words:
                place = words.index(option)
                del words[place : place + 2]
        found.setdefault(pathlib.Path(entry["file"]).parent, (entry["directory"], words))
    return found


def options_for(header, found):
    """Those of a source in the header's folder, else in the nearest folder above, else of any source below src/."""
    for folder in header.parents:
        if folder in found:
            return found[folder]
        below = sorted(path for path in found if folder in path.parents)
        if below and folder != ROOT:
            return found[below[0]]
    return next(value for path, value in sorted(found.items()) if ROOT / "src" in path.parents)


def compile_alone(header, found):
    directory, words = options_for(header, found)
    command = [*words, "-fsyntax-only", "-x", "c++", "-include", str(header), os.devnull]
    done = subprocess.run(command, cwd=directory, capture_output=True, text=True)
    return header, done.returncode, done.stderr


def comes_first(header):
    """Whether the source of the header's own name includes it before anything else."""
    source = header.with_suffix(".cpp")
    if not source.exists():
        return False
    first = re.search(r'^#\s*include\s*["<]([^">]+)[">]', source.read_text(encoding="utf-8"), re.M)
    return first is not None and header.as_posix().endswith("/" + first.group(1))


def main():
    words = [word for word in sys.argv[1:] if word != "--all"]
    build = pathlib.Path(words[0] if words else ROOT / "build" / "release").resolve()
    found = commands(build)
    headers = [path for tree in TREES for path in sorted((ROOT / tree).rglob("*.h"))]
    built = [] if "--all" in sys.argv else [header for header in headers if comes_first(header)]
    headers = sorted(set(headers) - set(built))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(lambda header: compile_alone(header, found), headers))
    faults = [(header, errors) for header, code, errors in results if code != 0]
    for header, errors in faults:
        print(f"does not compile alone: {header.relative_to(ROOT)}\n{errors}")
    print(f"headers: {len(headers)} alone, {len(built)} by the build, {len(faults)} faults")
    return 1 if faults or not headers else 0


if __name__ == "__main__":
    sys.exit(main())
