#!/bin/bash
# The rooms of src/ include one another one way only, Qt stays in platform and app, and a person can hold each file.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../src"

# Each room may include itself, the record of a sizing, and what stands beside it here.
declare -A may=(
    [base]=""
    [files]="base"
    [capacity]="base files"
    [engine]="base capacity"
    [report]="base capacity engine"
    [tables]="base files capacity engine"
    [platform]="base capacity engine report"
    [lists]="base files capacity engine report platform"
    [app]="base files capacity engine report platform lists"
)

status=0
fault() {
    echo "check_rooms: $*" >&2
    status=1
}

diff <(printf '%s/\n' "${!may[@]}" | sort) <(ls -d -- */) >&2 || fault "other rooms than these: ${!may[*]}"
for room in "${!may[@]}"; do
    allowed="app/sizing_state|$room/[a-z_]+"
    for other in ${may[$room]}; do
        allowed+="|$other/[a-z_]+"
    done
    ! grep -rnE '#include "' "$room" | grep -vE "#include \"($allowed)\.h\"" || fault "not to be included in src/$room"
done
! grep -rnE --exclude=size_valves.cpp '#\s*include\s*[<"]([^>"]*/)?Q[A-Za-z]' base files capacity engine report tables lists || fault "Qt below the desktop"

for file in $(git ls-files ..); do
    case $file in *.cpp | *.h | *.py | *.sh) (($(wc -l <"$file") <= 350)) || fault "$file is longer than 350 lines" ;; esac
done
exit "$status"
