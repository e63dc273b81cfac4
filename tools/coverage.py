#!/usr/bin/env python3
"""Lines of src/ that the tests do not execute.

    cmake --preset coverage && cmake --build --preset coverage && ctest --test-dir build/coverage -j 2
    tools/coverage.py [build/coverage]

Reads the counters of every object of the evaluation through gcov and prints the share of executed lines and each
line that no test reached.
"""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCES = ROOT / "src"


def counted_lines(build):
    """(file, line) -> executions, over all counter files of the evaluation."""
    counts = collections.Counter()
    for data in sorted((build / "src").rglob("*.gcda")):
        done = subprocess.run(
            ["gcov", "--json-format", "--stdout", str(data)], cwd=build, capture_output=True, check=True
        )
        for text in done.stdout.decode().splitlines():
            for file in json.loads(text)["files"]:
                path = (build / file["file"]).resolve()
                if SOURCES in path.parents:
                    for line in file["lines"]:
                        counts[path.relative_to(ROOT), line["line_number"]] += line["count"]
    return counts


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build" / "coverage").resolve()
    counts = counted_lines(build)
    if not counts:
        print(f"no counters below {build}: build the coverage preset and run its tests first")
        return 1
    missed = sorted(place for place, count in counts.items() if count == 0)
    for path, line in missed:
        text = (ROOT / path).read_text(encoding="utf-8").splitlines()[line - 1].strip()
        print(f"{path}:{line}: {text}")
    share = 100.0 * (len(counts) - len(missed)) / len(counts)
    print(f"{share:.2f} % of {len(counts)} lines of src/ executed, {len(missed)} not")
    return 0


if __name__ == "__main__":
    sys.exit(main())
