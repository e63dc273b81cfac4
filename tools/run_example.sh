#!/usr/bin/env bash
# From a fresh Debian machine to an evaluated part and its page: installs what is needed, builds, runs the ribbed
# cover and says where the results and the page are.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install_packages.sh build
cmake --preset release -DQNL_BUILD_TESTS=OFF > /dev/null
cmake --build --preset release --target frozenlayer QNL3DFrozenLayer | tail -n 1
mkdir -p out
rm -rf out/ribbed-cover
cp -r examples/ribbed-cover out/ribbed-cover
build/release/apps/frozenlayer/frozenlayer run out/ribbed-cover --view out/ribbed-cover.html
