#!/bin/bash
# Holds a Debian package to Debian's rules, installs it into a clean system of its own, and sizes valves with what is
# installed there. Needs root, or user namespaces: package_check.sh PACKAGE.deb
set -euo pipefail

package=$(readlink -f "$1")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

# A check by root would be warned of; the check has no need of root's rights.
echo "== Holding $(basename "$package") to Debian's rules"
lintian --allow-root --fail-on error,warning --tag-display-limit 0 "$package"

echo "== Installing it into a clean system"
cp "$package" package.deb
chmod 755 "$scratch"
chmod 644 package.deb
cat >inside.sh <<'INSIDE'
set -eu
apt-get install -y --no-install-recommends /package.deb >/install.log 2>&1 || { cat /install.log; exit 1; }
guide=$(readlink -e /usr/lib/blanketing-valve-sizing/user_guide.html)
test -s "$guide"
cd /usr/share/doc/blanketing-valve-sizing
status=0
LC_ALL=C.UTF-8 size_valves --quiet -o /sized.csv examples/tanks.csv || status=$?
test $status = 1 # one of the tanks is refused
cmp /sized.csv examples/tanks_sized.csv
echo "the installed program sizes the example list"
status=0
QT_QPA_PLATFORM=offscreen timeout 3 blanketing-valve-sizing || status=$?
test $status = 124 # it ran until it was stopped
echo "the installed desktop program starts"
# A maker's own tables outlive a reinstallation and a removal.
build_capacities --label mine data /etc/blanketing-valve-sizing/capacities.mdb 2>/dev/null
own=$(cksum </etc/blanketing-valve-sizing/capacities.mdb)
dpkg -i --force-confold /package.deb >/dev/null
test "$(cksum </usr/lib/blanketing-valve-sizing/capacities.mdb)" = "$own"
dpkg -r blanketing-valve-sizing >/dev/null
test "$(cksum </etc/blanketing-valve-sizing/capacities.mdb)" = "$own"
echo "a changed data file outlives reinstallation and removal"
INSIDE
# shellcheck disable=SC2016 # the $1 is the new system's
mmdebstrap --quiet --variant=apt --customize-hook="copy-in package.deb inside.sh /" \
    --customize-hook='chroot "$1" sh /inside.sh' bookworm /dev/null
