#!/usr/bin/env bash
# Everything that must hold before a change lands, in the order of cost; the last lines are ctest's own.
# QNL_GATES names the gates to run (default: all).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install_packages.sh build import test page
gates=${QNL_GATES:-format checks headers tidy odr address threads tests}

gate() {
  [[ " $gates " == *" $1 "* ]] || return 1
  echo "== $1 ($(date +%T))"
}

# Configures and builds one preset, quietly unless something fails.
build() {
  cmake --preset "$1" -DQNL_BUILD_TESTS=ON > /dev/null
  cmake --build --preset "$1" | tail -n 1
}

# Runs the tests of one preset; the summary comes last, after the closing lines of the page's own log.
run() {
  local log=build/$1/tests.log
  ctest --preset "$1" -j "$(nproc)" > "$log" 2>&1 || { grep -v '  Passed  ' "$log"; return 1; }
  [ ! -f "build/$1/page.log" ] || tail -n 10 "build/$1/page.log"
  tail -n 12 "$log"
}

if gate format; then
  git ls-files '*.h' '*.cpp' | xargs -r clang-format --dry-run --Werror
  black --quiet --check tools tests || { black --check tools tests; exit 1; }
  /usr/bin/python3 -m flake8 tools tests
fi
if gate checks; then
  python3 tools/check_layers.py
  python3 tools/check_names.py
  python3 tools/check_tables.py
  python3 tools/check_conformance.py
fi
if gate headers; then
  cmake --preset release -DQNL_BUILD_TESTS=ON > /dev/null
  python3 tools/check_headers.py build/release
fi
if gate tidy; then
  cmake --preset release -DQNL_BUILD_TESTS=ON > /dev/null
  tools/tidy.sh
fi
if gate odr; then
  # Types and functions of one name and different content, which only the link of a whole program sees.
  cmake --preset odr > /dev/null
  cmake --build --preset odr | tail -n 1
fi
if gate address; then
  build asan
  run asan
fi
if gate threads; then
  build tsan
  # The OpenMP runtime itself is not instrumented, so its modules are ignored.
  run tsan
fi
if gate tests; then
  build release
  QNL_BROWSER=required run release
fi
