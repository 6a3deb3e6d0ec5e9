#!/bin/bash
# Runs a command in a fresh minimal Debian system, as an ordinary user who has sudo, in a copy of this tree: what git
# tracks, as it is now, and new files that git does not ignore. FILEs are put into the copy, too. Afterwards the system is
# removed; only the packages that were downloaded are kept. The exit status is that of the command.
#     in_clean_root.sh [--with FILE]... SUITE COMMAND...
# Needs root, or sudo, and a Debian system, whose archives, proxy and network are used.
set -euo pipefail
self=$(readlink -f "$0")
tree=$(dirname "$(dirname "$self")")

# Makes the system SUITE in $root.
make_system() {
    local option options=(--mode=root --variant=minbase --include=sudo --include=ca-certificates
                          --skip=check/empty --skip=essential/unlink --skip=cleanup/apt)
    while read -r option; do
        options+=("--aptopt=$option")
    done < <(apt-config dump | grep -E '^Acquire::(https?::|Check-|Retries)')
    [[ -z ${http_proxy:-} ]] || options+=("--aptopt=Acquire::http::Proxy \"$http_proxy\"")
    [[ -z ${https_proxy:-} ]] || options+=("--aptopt=Acquire::https::Proxy \"$https_proxy\"")
    [[ ! -d /etc/apt/mirrors ]] || options+=("--setup-hook=copy-in /etc/apt/mirrors /etc/apt") # lists of mirrors
    "$tree/tools/debian_sources.sh" deb "$1" >"$scratch/sources.list"
    mmdebstrap "${options[@]}" "$1" "$root" "$scratch/sources.list"
}

# NUL-separated. A copy that this script has made has no repository.
list_files() {
    if git -c safe.directory='*' rev-parse 2>/dev/null; then
        git -c safe.directory='*' ls-files -z --cached --others --exclude-standard
    else
        find . -path './build*' -prune -o ! -type d -print0
    fi
}

copy_tree() {
    local to=$root/home/user/tree
    mkdir "$to"
    (cd "$tree" && list_files | tar -c --null --ignore-failed-read -T -) | tar -x -C "$to"
    ((${#with[@]} == 0)) || cp "${with[@]}" "$to"
    chroot "$root" chown -R user: /home/user
}

# In namespaces of its own, as their first process: mounts and processes inside end with it.
run_inside() {
    local suite=$1
    shift
    read -r init _ </proc/self/stat # as the processes outside number it
    echo "$init" >"$scratch/init"
    mount --bind "$root" "$root" # namespaces within this one want a mount point as their root
    make_system "$suite"
    cp /etc/hosts "$root/etc/hosts"
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # starts no services: the ports are this machine's
    chmod 755 "$root/usr/sbin/policy-rc.d"
    mount -t proc proc "$root/proc"
    mount --rbind /sys "$root/sys"
    mount -t devpts -o newinstance,ptmxmode=666 devpts "$root/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    chroot "$root" useradd --create-home --shell /bin/bash user
    echo 'user ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/user"
    copy_tree
    echo "== In the clean system: $*"
    # shellcheck disable=SC2016 # the $@ is the command there
    chroot "$root" runuser -l -c 'cd tree && exec "$@"' user -- clean "$@"
}

# Puts the packages into the system that need no download then. They are never changed, so links to them do.
offer_packages() {
    mkdir -p "$root/$archives"
    find "$packages" "$archives" -name '*.deb' -exec cp -nlt "$root/$archives" {} + 2>/dev/null || true
}

# Keeps what was downloaded. Of the packages that were kept before, those stay that can still be downloaded.
keep_packages() {
    local package
    chroot "$root" apt-get -qq autoclean >/dev/null
    for package in "$packages"/*.deb; do
        [[ -e $root/$archives/${package##*/} ]] || rm -f "$package"
    done
    for package in "$root/$archives"/*.deb; do
        [[ -e $archives/${package##*/} ]] || cp -nlt "$packages" "$package"
    done
}

# shellcheck disable=SC2317 # the trap calls it
clean_up() {
    if [[ $namespaces ]]; then # interrupted; it ends when all inside have ended
        kill -KILL "$(<"$scratch/init")" || kill -KILL "$namespaces"
        wait
    fi 2>/dev/null
    rm -rf --one-file-system "$scratch"
}

arguments=("$@")
scratch=
if [[ ${1:-} == --inside ]]; then
    scratch=$2
    shift 2
fi
with=()
while [[ ${1:-} == --with ]]; do
    with+=("$(readlink -e "$2")")
    shift 2
done
(($# >= 2)) || { sed -n '5s/#  *//p' "$self" >&2; exit 2; }
((EUID == 0)) || exec sudo "$self" "${arguments[@]}"
cache=${XDG_CACHE_HOME:-~/.cache}/blanketing-valve-sizing
packages=$cache/packages-$1
archives=/var/cache/apt/archives # where apt keeps what it downloads
if [[ $scratch ]]; then
    root=$scratch/root
    run_inside "$@"
    exit
fi

"$tree/tools/install_packages.sh" root
mkdir -p "$packages"
scratch=$(mktemp -d "$cache/$1-XXXXXX")
root=$scratch/root
offer_packages # here: within a bind mount no link leads out of it
chmod 755 "$scratch" # mktemp's mode would become that of the system's /
set -m # the command is started with all signals as usual
unshare --mount --pid --ipc --uts --fork --kill-child "$self" --inside "$scratch" "${arguments[@]}" </dev/null &
namespaces=$!
trap clean_up EXIT
trap 'exit 130' INT TERM HUP
status=0
wait "$namespaces" || status=$?
namespaces=
keep_packages || true
exit "$status"
