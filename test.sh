#!/bin/bash
# Installs what is missing, builds everything and runs every test: test.sh [PRESET], a preset of CMakePresets.json.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
preset=${1:-release}

tools/install_packages.sh build test print

tree=build
[[ $preset == release ]] || tree=build-$preset
tools/check_build_tree.sh "$tree"
echo "== Building everything ($preset)"
cmake --preset "$preset"
cmake --build --preset "$preset"

echo "== Running every test ($preset)"
ctest --preset "$preset" --parallel "$(nproc)"
