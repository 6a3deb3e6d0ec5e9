#!/bin/bash
# Holds a Debian package of this system's suite to the rules of Debian, and installs it into a clean system of that suite:
# sizes there, prints, upgrades and removes it. LATER is a package with the same tables, made on another day; without it,
# the same package is the upgrade. Needs root, or sudo: package_check.sh PACKAGE.deb [LATER.deb]
set -euo pipefail

tools=$(dirname "$(readlink -f "$0")")
suite=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# A check by root would be warned of; the check has no need of root's rights.
echo "== Holding $(basename "$1") to Debian's rules"
lintian --allow-root --fail-on error,warning --tag-display-limit 0 "$1"
dpkg-deb -x "$1" "$scratch/files"
appstreamcli validate --no-net "$scratch"/files/usr/share/metainfo/*.xml

# The upgrade under a higher version.
cp "$1" "$scratch/package.deb"
dpkg-deb -R "${2:-$1}" "$scratch/later"
sed -i 's/^Version: .*/&+later/' "$scratch/later/DEBIAN/control"
dpkg-deb --root-owner-group -b "$scratch/later" "$scratch/later.deb" >/dev/null

echo "== Installing it into a clean system ($suite)"
"$tools/in_clean_root.sh" --with "$scratch/package.deb" --with "$scratch/later.deb" "$suite" tools/package_check_inside.sh
