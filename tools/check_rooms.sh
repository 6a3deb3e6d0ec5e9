#!/bin/bash
# The rooms of src/ include one another one way only, and the core knows no Qt.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../src"

rooms=(base capacity engine report platform app) # each may include itself, those before it, and the record
core=(base capacity engine report)

status=0
fault() {
    echo "check_rooms: $*" >&2
    status=1
}

diff <(printf '%s/\n' "${rooms[@]}" | sort) <(ls -d -- */) >&2 || fault "other rooms than these: ${rooms[*]}"
allowed=app/sizing_state
for room in "${rooms[@]}"; do
    allowed+="|$room/[a-z_]+"
    ! grep -rnE '#include "' "$room" | grep -vE "#include \"($allowed)\.h\"" || fault "not to be included in src/$room"
done
! grep -rnE '#\s*include\s*[<"]([^>"]*/)?Q[A-Za-z]' "${core[@]}" || fault "Qt in the core"
exit "$status"
