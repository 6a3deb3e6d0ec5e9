#!/bin/bash
# Says what to do about a build tree that the user may not write into, as a run with sudo leaves it:
# check_build_tree.sh DIRECTORY
set -euo pipefail

[[ -d $1 ]] || exit 0
foreign=$(find "$1" -maxdepth 2 ! -writable -print -quit)
[[ $foreign ]] || exit 0
owner=$(stat -c %U "$foreign")
echo "$1 belongs in part to $owner, mostly from a run with sudo (the scripts call sudo by themselves)." >&2
echo "Give it back with: sudo chown -R $(id -un) $1" >&2
exit 1
