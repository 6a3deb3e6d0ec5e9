#!/bin/bash
# Installs what is missing of the Debian packages of the named groups: install_packages.sh GROUP...
set -euo pipefail

# group, package, why it is needed
table='
build   g++               C++20 compiler with the C and C++ libraries
build   cmake             configures the build
build   ninja-build       runs it
build   qt6-base-dev      windows and simulated input (Widgets, Test)
build   libsqlite3-dev    the valve capacity file
build   libcsv-dev        reads the data files that the capacity file is built from
build   libcups2-dev      the print queues of the machine
build   libgtest-dev      the tests
build   cmark-gfm         makes the user guide a page that a browser shows
build   python3           runs the end-to-end checks; looked for as soon as the build is configured
run     fonts-liberation  the typefaces that the fixed layouts of screens and report are measured for
wayland qt6-wayland       windows on a Wayland session without an X server
tour    python3           works the program
tour    xvfb              the virtual display
tour    xdotool           presses the keys
tour    imagemagick       takes and compares the pictures
tour    cups              a print queue for the summary
tour    poppler-utils     makes a picture of it
print   cups              a real print queue for the print check
print   python3           runs the check
print   xvfb              its virtual display
print   xdotool           presses its keys
print   poppler-utils     reads the printed page
test    libbenchmark-dev  the benchmarks, built only when asked for
test    libxtst-dev       presses the keys of key_walk, built only when asked for
test    fonts-liberation  as for the program
test    locales           sources of the locales that the tests build for themselves
test    xvfb              a virtual display for the speech check
test    xdotool           presses its keys
test    dbus-daemon       a session bus for the speech check
test    at-spi2-core      what screen readers listen to
test    python3-pyatspi   listens there
package file              finds the programs whose libraries the package depends on
package dpkg-dev          names the packages that these libraries come from
package lintian           holds the package to the rules of Debian
package appstream         and its metadata to those of software centres
root    mmdebstrap        makes a clean system
windows g++-mingw-w64-x86-64-posix builds for Windows
windows g++               builds what makes SQLite and Qt
windows cmake             configures these builds
windows ninja-build       runs them
windows make              does for SQLite
windows tcl               puts SQLite into one file
windows qt6-base-dev-tools makes code for Qt, on this system
windows qt6-base-dev      says where these tools are
windows dpkg-dev          unpacks the sources of Debian packages
windows nsis              makes the installer
windows wine              runs what the build makes and needs itself
windows wine64            that is, programs of 64 bits
windows googletest        the library of the tests, as source
windows cmark-gfm         makes the user guide a page that a browser shows
windows python3           makes the tables of the tests
windows zip               makes the portable archive
wine    openbox           gives the windows their focus
wine    xclip             reads what the program copies
wine    fonts-liberation  stands in for Arial
wine    ghostscript       makes a picture of what reaches it
format  clang-format      the common source format
ci      devscripts        hardening-check
ci      shellcheck        faults in the scripts
'

wanted=()
for group in "$@"; do
    found=
    while read -r owner package _; do
        [[ $owner == "$group" ]] || continue
        wanted+=("$package")
        found=yes
    done <<<"$table"
    [[ $found ]] || { echo "install_packages.sh: no group named \"$group\"" >&2; exit 2; }
done

# dpkg-query fails when it does not know one of the packages, and still answers for the others.
# shellcheck disable=SC2016 # the ${...} are dpkg-query's
installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${wanted[@]}" 2>/dev/null || true)
missing=()
for package in "${wanted[@]}"; do
    grep -qxF "$package installed" <<<"$installed" || missing+=("$package")
done
((${#missing[@]})) || exit 0

echo "== Installing Debian packages: ${missing[*]}"
asRoot=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null || ! sudo true; then
        echo "This needs root, and sudo does not give it. Have an administrator run: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    asRoot=(sudo)
fi
# Another package run on the machine (automatic upgrades) may hold the lock for a while.
apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0)
"${asRoot[@]}" "${apt[@]}" update
"${asRoot[@]}" "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
