#!/usr/bin/env bash
# From temperatures of another program to project, results, surface files and page.
#   road.sh [OUT_FOLDER [SERIES [MATERIAL]]]
# FROZENLAYER names the program if it is not in the path.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=${1:-out}
series=${2:-$here/b.pvd}
material=${3:-$here/../stepped-plate/Material/pp.toml}
program=${FROZENLAYER:-frozenlayer}

mkdir -p "$out"
"$program" import "$series" --out "$out/plate" --material "$material"
"$program" run "$out/plate"
"$program" export "$out/plate" --out "$out/surface"
"$program" view "$out/plate" --out "$out/plate.html"
