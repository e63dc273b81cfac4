#!/usr/bin/env bash
# Everything that must hold before a change lands, in the order of cost; the last lines are ctest's own.
# QNL_GATES names the gates to run (default: all).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install_packages.sh build test
gates=${QNL_GATES:-format layers sanitizers clang tests}

gate() {
  [[ " $gates " == *" $1 "* ]] || return 1
  echo "== $1 ($(date +%T))"
}

if gate format; then
  git ls-files '*.h' '*.cpp' | xargs -r clang-format --dry-run --Werror
fi
if gate layers; then
  python3 tools/check_layers.py
  python3 tools/check_names.py
  python3 tools/check_conformance.py
fi
if gate sanitizers; then
  cmake --preset asan > /dev/null
  cmake --build --preset asan
  ctest --test-dir build/asan -L unit --output-on-failure -j "$(nproc)" --quiet
  cmake --preset tsan > /dev/null
  cmake --build --preset tsan
  ctest --test-dir build/tsan -L threads --output-on-failure --quiet
fi
if gate clang; then
  cmake --preset clang > /dev/null
  cmake --build --preset clang
fi
if gate tests; then
  cmake --preset release > /dev/null
  cmake --build --preset release
  ctest --test-dir build/release --output-on-failure -j "$(nproc)"
fi
