#!/usr/bin/python3
"""Mutation testing of C++: changes the program in one place after the other and runs its unit tests each time. A
change, a mutant, that no test notices survives, and shows what the tests do not look at.

  tools/mutation/mutate.py --cmake=-DQNL_BUILD_TOOL=OFF src/profile src/output/OutputItems.cpp

All mutants are built at once into a copy of the project below build/mutation, where an environment variable chooses
one at run time; the project itself is not touched. Each test is run alone once, to see which mutants it reaches; each
mutant is then tried with the tests that reach it, up to the first that fails. A mutant that takes ten times as long as
the tests without it, and two seconds, of processor time has timed out, which counts as noticed.

Mutants:
  a < b             a <= b, a != b, false; a <= b: a < b, a == b, true; likewise > and >=. In the condition of a loop
                    only the boundary and false
  a == b, a != b    true, false
  !a, conditions    true, false; the condition of a loop: false
  a && b, a || b    a alone, b alone
  a + b, a * b      a - b, a / b and the reverse, a % b: a * b; likewise << >> & | ^ and the compound assignments
  -a, ++a           a, --a
  3, 0.3, true      4, 0.3 * 1.1, false; 0.0: 1.0
  f(x); a = b;      nothing
Macros are left alone. constexpr constants and functions become ordinary ones where nothing asks for their value at
compile time; what else the compiler must know (array sizes, template arguments, case labels, loops shared by OpenMP)
is listed as not tried, or tried by building each mutant alone with --rebuild, some ten seconds each.

The tests of a file are those of the executable target test_<folder>, by the first folder in its path that has one;
--tests names others. Mutants that no test can tell apart are listed with the reason in tests/mutation/equivalent.txt,
in the words of this report, and are passed over:
  file | line of the source | mutation | reason

A mutant whose effect hangs on the order of threads may be noticed in one run and not in the next. A mutant of code
that removes files can remove others than meant; temporary files go below build/mutation. Takes some 0.05 seconds a
mutant, besides the build.
Needs the Debian packages of `tools/install_packages.sh mutation`.
"""
import argparse
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folders", nargs="+", metavar="FOLDER", help="folder or file of the project")
    parser.add_argument(
        "--source",
        type=pathlib.Path,
        default=ROOT,
        metavar="FOLDER",
        help="the project, with its CMakeLists.txt (default: this one)",
    )
    parser.add_argument(
        "--scratch",
        type=pathlib.Path,
        metavar="FOLDER",
        help="for the copy and its build (default: build/mutation of the project)",
    )
    parser.add_argument(
        "--tests",
        action="append",
        default=[],
        metavar="FOLDER=TARGET[,TARGET]",
        help="test executables of a folder, in place of test_<folder>",
    )
    parser.add_argument(
        "--equivalent",
        type=pathlib.Path,
        metavar="FILE",
        help="list of equivalent mutants (default: tests/mutation/equivalent.txt of the project)",
    )
    parser.add_argument("--rebuild", action="store_true", help="also try, one by one, what needs a build of its own")
    parser.add_argument("--json", type=pathlib.Path, metavar="FILE", help="write every mutant and its fate")
    parser.add_argument("--cmake", action="append", default=[], metavar="ARGUMENT", help="argument for CMake")
    parser.add_argument("--flags", default="-O1", help="compiler flags (default: %(default)s)")
    parser.add_argument(
        "--memory",
        type=int,
        default=2048,
        metavar="MB",
        help="address space of a test, 0: no limit, which sanitizers need (default: %(default)s)",
    )
    parser.add_argument("-j", "--jobs", type=int, default=1, help="processes at a time (default: %(default)s)")
    return parser.parse_args()


def main():
    options = parse_arguments()
    try:
        from session import ProjectError, Session
    except ModuleNotFoundError as missing:
        if missing.name != "clang":
            raise
        print("libclang for Python is missing: tools/install_packages.sh mutation", file=sys.stderr)
        return 2
    try:
        Session(options).run()
    except ProjectError as fault:
        print(fault, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main())
