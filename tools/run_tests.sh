#!/usr/bin/env bash
# Everything that must hold before a change lands, in the order of cost; the last lines are ctest's own.
# QNL_GATES names the gates to run (default: all).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install_packages.sh build import test page
gates=${QNL_GATES:-format checks odr tests address threads}

gate() {
  [[ " $gates " == *" $1 "* ]] || return 1
  echo "== $1 ($(date +%T))"
}

# Configures and builds one preset, quietly unless something fails.
build() {
  cmake --preset "$1" -DQNL_BUILD_TESTS=ON > /dev/null
  cmake --build --preset "$1" | tail -n 1
}

# Runs tests of one preset; the summary comes last, after the closing lines of the page's own log.
run() {
  local preset=$1
  shift
  ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)" "$@" > "build/$preset/tests.log" 2>&1 ||
    { grep -v '  Passed  ' "build/$preset/tests.log"; return 1; }
  [ ! -f "build/$preset/page.log" ] || tail -n 10 "build/$preset/page.log"
  tail -n 12 "build/$preset/tests.log"
}

if gate format; then
  git ls-files '*.h' '*.cpp' | xargs -r clang-format --dry-run --Werror
fi
if gate checks; then
  python3 tools/check_layers.py
  python3 tools/check_names.py
  python3 tools/check_tables.py
  python3 tools/check_conformance.py
fi
if gate odr; then
  # Types and functions of one name and different content, which only the link of a whole program sees.
  cmake --preset odr > /dev/null
  cmake --build --preset odr | tail -n 1
fi
if gate address; then
  build asan
  LSAN_OPTIONS=suppressions=$PWD/tests/leaks_of_libraries.txt:print_suppressions=0 run asan -L unit
fi
if gate threads; then
  build tsan
  # The OpenMP runtime itself is not instrumented.
  TSAN_OPTIONS=ignore_noninstrumented_modules=1 run tsan -L unit
fi
if gate tests; then
  build release
  QNL_BROWSER=required OMP_WAIT_POLICY=passive run release
fi
