#!/usr/bin/env bash
# From a fresh Debian machine to an evaluated part: installs what is needed, builds, runs the ribbed cover.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install_packages.sh build
cmake --preset release -DQNL_BUILD_TESTS=OFF > /dev/null
cmake --build --preset release --target frozenlayer QNL3DFrozenLayer
mkdir -p out
rm -rf out/ribbed-cover
cp -r examples/ribbed-cover out/ribbed-cover
build/release/apps/frozenlayer/frozenlayer run out/ribbed-cover
