#!/usr/bin/env bash
# Installs the Debian packages that building and testing need. Runs as root or through sudo; does nothing
# when all are there.
#   tools/install_packages.sh build|import|test|page|mutation|openfoam|calculix ...
set -euo pipefail

build_packages=(g++ cmake ninja-build libhdf5-dev libcli11-dev libtomlplusplus-dev libboost-dev libeigen3-dev
                nlohmann-json3-dev zlib1g-dev libxxhash-dev git ca-certificates)
import_packages=(libvtk9-dev)
test_packages=(clang clang-format clang-tidy black flake8 python3-flake8 libomp-dev libgtest-dev libbenchmark-dev python3-h5py python3-numpy)
# The page's tests; Node.js may as well come from elsewhere than Debian.
page_packages=(chromium)
command -v node > /dev/null || page_packages+=(nodejs)
command -v npm > /dev/null || page_packages+=(npm)
# libclang reads <omp.h> from libomp-dev.
mutation_packages=(python3-clang-14 libomp-dev libgtest-dev)
# 431 MB once installed: for one test, which is skipped without it.
openfoam_packages=(openfoam)
calculix_packages=(calculix-ccx)

# VTK's readers for the tests; ParaView brings its own and does not go together with this package.
command -v pvpython > /dev/null || test_packages+=(python3-vtk9)

wanted=()
for group in "$@"; do
  case "$group" in
    build) wanted+=("${build_packages[@]}") ;;
    import) wanted+=("${import_packages[@]}") ;;
    test) wanted+=("${test_packages[@]}") ;;
    page) wanted+=("${page_packages[@]}") ;;
    mutation) wanted+=("${mutation_packages[@]}") ;;
    openfoam) wanted+=("${openfoam_packages[@]}") ;;
    calculix) wanted+=("${calculix_packages[@]}") ;;
    *) echo "unknown package group \"$group\": build, import, test, page, mutation, openfoam or calculix" >&2; exit 2 ;;
  esac
done

missing=()
for package in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
