#!/bin/bash
# Writes lines for a sources.list: the Debian archives that this system itself uses, for packages (deb) or for their
# sources (deb-src), of the named suite or else of its own: debian_sources.sh deb|deb-src [SUITE]
set -euo pipefail

own=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
# shellcheck disable=SC2016 # the $(...) are apt-get's
archives=$(apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' | sort -u)
if [[ -z $own || -z $archives ]]; then
    echo "debian_sources.sh: no archive of Debian is known here. Run apt-get update." >&2
    exit 1
fi
while read -r uri suite component; do
    echo "$1 [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $uri ${suite/#$own/${2:-$own}} $component"
done <<<"$archives"
