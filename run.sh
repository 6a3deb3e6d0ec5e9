#!/bin/bash
# Installs what is missing, builds the program into build/ and opens it. Without a display it is taken on a tour instead:
# see tools/tour.py.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"

groups=(build run)
if [[ -z ${DISPLAY:-} ]]; then
    if [[ -n ${WAYLAND_DISPLAY:-} ]]; then groups+=(wayland); else groups+=(tour); fi
fi
tools/install_packages.sh "${groups[@]}"

tools/check_build_tree.sh build
echo "== Building the program"
cmake --preset release
cmake --build --preset release --target blanketing-valve-sizing size_valves capacities documents

if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
    echo "== Opening the program"
    exec build/bin/blanketing-valve-sizing
fi
echo "== There is no display (DISPLAY and WAYLAND_DISPLAY are empty): running the program on a virtual one"
tools/tour.py build/bin/blanketing-valve-sizing build/tour
