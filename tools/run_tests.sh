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

# Configures one preset, with further settings, and builds it, quietly unless something fails. Only the release build
# reads every header of the libraries where it is included, so that it is the one that finds missing includes.
build() {
  cmake --preset "$1" -DQNL_PRECOMPILE_TESTS=ON "${@:2}" > /dev/null
  make_target "$1" all
}

# Builds one target of a configured preset.
make_target() {
  local log=build/$1/$2.log
  cmake --build --preset "$1" --target "$2" > "$log" 2>&1 || { grep -E -A 8 'error:|FAILED' "$log"; return 1; }
  tail -n 1 "$log"
}

# What users run, with the end-to-end tests, and the unit tests of what the sanitizers leave out: the programs, and the
# bits of the gradients, which the optimiser must keep. The tests' own loops are not what is tested.
release_units="commands;compare;demo;exports;imports;info;interop;page;profiles;project;recovery;runs;series;text"
build_release() {
  build release -DQNL_BUILD_TESTS=ON -DQNL_ODR=ON -DQNL_TEST_OPTIONS=-O1 "-DQNL_UNIT_FOLDERS=$release_units"
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
  build_release
  make_target release odr
fi
if gate address; then
  build asan -DQNL_BUILD_TESTS=ON -DQNL_PRECOMPILE_STD=ON
  run asan
fi
if gate threads; then
  build tsan -DQNL_BUILD_TESTS=ON -DQNL_PRECOMPILE_STD=ON
  # The OpenMP runtime itself is not instrumented, so its modules are ignored.
  run tsan
fi
if gate tests; then
  build_release
  QNL_BROWSER=required run release
fi
