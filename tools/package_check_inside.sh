#!/bin/bash
# Installs package.deb into the system that this runs in, a clean one, and upgrades it to later.deb: package_check.sh calls it.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

dataFile=/etc/blanketing-valve-sizing/capacities.mdb
shared=/usr/share/blanketing-valve-sizing

fail() {
    echo "package_check: $*" >&2
    exit 1
}

# Unattended, as an automatic upgrade is: install_package FILE
install_package() {
    # shellcheck disable=SC2024 # the log is the user's
    sudo DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0 install -y --no-install-recommends "$1" </dev/null >install.log 2>&1 ||
        { cat install.log >&2; fail "$1 is not installed"; }
}

status_of() {
    local status=0
    "$@" || status=$?
    echo "$status"
}

# Minimal systems leave the documents of packages out.
echo 'path-exclude=/usr/share/doc/*' | sudo tee /etc/dpkg/dpkg.cfg.d/minimal >/dev/null
sudo apt-get -qq update
install_package ./package.deb
test -s "$(readlink -e /usr/lib/blanketing-valve-sizing/user_guide.html)" || fail "F1 finds no guide"

status=$(LC_ALL=C.UTF-8 status_of size_valves --quiet -o sized.csv "$shared/examples/tanks.csv")
[[ $status == 1 ]] || fail "size_valves gives $status" # one of the tanks is refused
cmp sized.csv "$shared/examples/tanks_sized.csv"
size_valves --verify >report.txt || { cat report.txt >&2; fail "the verification list does not agree"; }
status=$(QT_QPA_PLATFORM=offscreen status_of timeout 3 blanketing-valve-sizing)
[[ $status == 124 ]] || fail "the desktop program ends with $status" # it must run until it is stopped
echo "ok: the installed programs start, and size the example list and the verification list"

tools/install_packages.sh print >install.log 2>&1 || { cat install.log >&2; exit 1; }
CI=true tests/end_to_end/print_check.py /usr/bin/blanketing-valve-sizing printed
echo "ok: the installed program prints"

# A maker's own tables outlive upgrade and removal, and so does his answer: nobody is asked.
sudo build_capacities --label mine "$shared/data" "$dataFile" 2>/dev/null
own=$(cksum <"$dataFile")
install_package ./later.deb
grep -E '^(Unpacking|Setting up) blanketing' install.log
[[ $(cksum </usr/lib/blanketing-valve-sizing/capacities.mdb) == "$own" ]] || fail "the upgrade has replaced a changed data file"
[[ $(ls "$dataFile"*) == "$dataFile" ]] || fail "the upgrade came with another data file"
sudo dpkg -r blanketing-valve-sizing >/dev/null
[[ $(cksum <"$dataFile") == "$own" ]] || fail "removal has not kept a changed data file"
echo "ok: a changed data file outlives upgrade and removal, and nobody is asked"

sudo dpkg -P blanketing-valve-sizing >/dev/null
left=$(sudo find /etc /usr /var -name '*blanketing*' ! -path '*/apt/*')
[[ -z $left ]] || fail "purging leaves $left"
echo "ok: purging leaves nothing"
