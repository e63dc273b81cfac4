#!/usr/bin/env python3
"""Measures what waiting threads cost `frozenlayer run`, on an idle machine and beside two busy processes.

Runs one project by default, with OMP_WAIT_POLICY=passive, with =active and with one thread, each as often
as asked, the ways in turn, and prints the median seconds of every way and its ratio to the default.

    benchmarks/waiting.py PROGRAM PROJECT [--repeats N]

PROGRAM is frozenlayer, PROJECT a project folder such as `frozenlayer demo` makes; its results are replaced.
"""
import argparse
import contextlib
import os
import statistics
import subprocess
import sys
import time

SETTINGS = ("OMP_WAIT_POLICY", "GOMP_SPINCOUNT", "OMP_NUM_THREADS")
WAYS = {
    "default": ((), {}),
    "passive": ((), {"OMP_WAIT_POLICY": "passive"}),
    "active": ((), {"OMP_WAIT_POLICY": "active"}),
    "one thread": (("--threads", "1"), {}),
}


def seconds(program, project, way):
    """Of one run; the program ends when it fails."""
    words, settings = WAYS[way]
    plain = {name: value for name, value in os.environ.items() if name not in SETTINGS}
    begin = time.perf_counter()
    done = subprocess.run(
        [program, "run", project, *words], env={**plain, **settings}, capture_output=True, text=True, check=False
    )
    elapsed = time.perf_counter() - begin
    if done.returncode != 0:
        sys.exit(f"{program} run {project} failed: {done.stderr}")
    return elapsed


@contextlib.contextmanager
def busy(count):
    """So many processes that do nothing but count."""
    processes = [subprocess.Popen([sys.executable, "-c", "while True: pass"]) for _ in range(count)]
    try:
        yield
    finally:
        for process in processes:
            process.kill()
            process.wait()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("program")
    parser.add_argument("project")
    parser.add_argument("--repeats", type=int, default=3)
    words = parser.parse_args()
    seconds(words.program, words.project, "default")  # makes the search file, which later runs find
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f} at the start, {words.repeats} runs each")
    print(f"{'beside':<20}{'way':<12}{'median s':>10}{'to default':>12}")
    for others in (0, 2):
        with busy(others):
            taken = {way: [] for way in WAYS}
            for _ in range(words.repeats):
                for way, times in taken.items():
                    times.append(seconds(words.program, words.project, way))
        medians = {way: statistics.median(times) for way, times in taken.items()}
        for way, median in medians.items():
            beside = f"{others} busy processes" if others else "nothing of ours"
            print(f"{beside:<20}{way:<12}{median:>10.2f}{median / medians['default']:>12.2f}")


if __name__ == "__main__":
    main()
