#!/bin/bash
# Proves the Windows program under wine, with what packaging/windows/build.sh has left in build-windows/: the tests of core
# and tools, the installer, one pad and one depad sizing by keystrokes with the figures of the tour, a locale with decimal
# commas, faults of the data file, one printed page, and the removal. Leaves pictures in build-windows/pictures/.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."

tree=$PWD/build-windows
pictures=$tree/pictures
scratch=${SIZING_CHECK_SCRATCH:-$(mktemp -d)}
setupTitle='Halvor-ORM  Blanketing Valve Sizing Application'
mainTitle='Halvor-ORM Blanketing Valve Sizing Application'
patience=90 # seconds that any one thing may take: wine starts slowly
processes=()

cleanUp() {
    [[ -z ${SIZING_CHECK_SCRATCH:-} ]] || return # the one that called this
    WINEPREFIX=$scratch/prefix wineserver -k 2>/dev/null || true
    ((${#processes[@]} == 0)) || kill "${processes[@]}" 2>/dev/null || true
    rm -rf "$scratch"
}
trap cleanUp EXIT

fail() {
    echo "check: $*" >&2
    import -silent -window root "$pictures/failed.png" || true
    exit 1
}

await() {
    local what=$1 deadline=$((SECONDS + patience))
    shift
    until "$@"; do
        ((SECONDS < deadline)) || fail "waited $patience seconds in vain for $what"
        sleep 0.2
    done
}

isShown() {
    xdotool search --onlyvisible --name "$1" >"$scratch/windows" 2>/dev/null
}

isGone() {
    ! isShown "$1"
}

focus() {
    await "the window $1" isShown "$1"
    xdotool windowactivate --sync "$(tail -n 1 "$scratch/windows")"
    sleep 0.5
}

press() {
    xdotool key --delay 60 "$@"
    sleep 0.3
}

typeText() {
    xdotool type --delay 60 "$1"
}

hasCopied() {
    timeout 5 xclip -o -selection clipboard 2>/dev/null | tr -d '\r' >"$scratch/copied"
    grep -q $'\t' "$scratch/copied"
}

hasCopiedAnswer() {
    hasCopied && grep -q $'\tsized\t800\t238\t1038\tSCFH\t1\t' "$scratch/copied"
}

# The results as the program itself copies them: expectResults CAPTION VALUE[TAB UNIT]...
expectResults() {
    local copied
    xclip -selection clipboard <<<"nothing yet"
    sleep 0.3
    press ctrl+shift+c
    await "the results to be copied" hasCopied
    copied=$(<"$scratch/copied")
    while (($#)); do
        grep -qxF "$1"$'\t'"$2" <<<"$copied" || fail "not $1 = $2 among the results:"$'\n'"$copied"
        shift 2
    done
}

# Opens the installed program: open [LOCALE]
open() {
    (cd "$scratch" && LC_ALL=${1:-C.UTF-8} exec wine "$program") >"$scratch/program.log" 2>&1 &
    focus "$setupTitle"
}

leave() {
    press alt+x
    await "the end of the program" isGone "$mainTitle"
}

sizePad() {
    press alt+c
    focus "$mainTitle"
    typeText "100"
    press Tab
    typeText "60"
    press Tab
    typeText "10000"
    press alt+s
}

# A sizing with every row of the summary, printed by the program into the queue of the scheduler around this.
printSummary() {
    local spool
    spool=$(dirname "$CUPS_SERVER")/spool
    open
    press alt+3 alt+u alt+d alt+2 alt+n
    typeText $'Example Refining\tTank farm 7\tTK-4711\tindoors\tA. Person'
    press alt+c
    focus "$mainTitle"
    typeText $'200\t1\t42000\t\t\t320\t120\tDiesel'
    press alt+s alt+t
    await "the print job" grep -qs EOF "$spool"/d*-001
    cp "$spool"/d*-001 "$scratch/page.ps"
    leave
}
if [[ ${1:-} == --print ]]; then
    program=$2
    printSummary
    exit
fi

tools/install_packages.sh windows wine tour
echo "== Tests of core and tools"
packaging/windows/build.sh core

echo "== Installing"
mkdir -p "$pictures"
export WINEPREFIX=$scratch/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
display=$((700 + RANDOM % 200))
Xvfb ":$display" -screen 0 1600x1200x24 -nolisten tcp -noreset >/dev/null 2>&1 &
processes+=($!)
export DISPLAY=:$display
sleep 1
openbox >/dev/null 2>&1 &
processes+=($!)
wineboot --init >/dev/null 2>&1
installer=$(echo "$tree"/blanketing-valve-sizing-*-setup.exe)
wine "$installer" /S
directory=$(echo "$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/Blanketing\ Valve\ Sizing)
program=$directory/blanketing-valve-sizing.exe
await "the installed program" test -e "$program"
await "the uninstaller" test -e "$directory/uninstall.exe"
find "$WINEPREFIX/drive_c" -name 'Halvor-ORM*.lnk' | grep -q . || fail "no entry in the start menu"

echo "== Sizing a pad and a depad valve"
open
press alt+c
focus "$mainTitle"
press alt+n
focus "$setupTitle"
import -silent -window root "$pictures/setup.png"
sizePad
import -silent -window root "$pictures/pad.png"
expectResults "Pump-Rate Flow" $'800\tSCFH' "Inbreathing Flow" $'238\tSCFH' "Total Flow Rate" $'1038\tSCFH' \
              "Valve Coefficient" 1 "Valve Body Size" '1"' "Max Valve Capacity" $'2560\tSCFH' "Valve Capacity Utilized (%)" 41
printf 'Pump Rate\tPressure\tTank Volume\n100\t60\t10000\n' | xclip -selection clipboard
sleep 0.3
press alt+e r
await "the copied row to be sized" hasCopiedAnswer
import -silent -window root "$pictures/copied_rows.png"
press alt+n
focus "$setupTitle"
press alt+3 alt+d alt+m alt+c
focus "$mainTitle"
typeText "50"
press Tab
typeText "50"
press Tab
typeText "500"
press Tab Tab Tab Tab
typeText "60"
press alt+s
import -silent -window root "$pictures/depad.png"
expectResults "Total Flow Rate" $'101\tNm3/Hr' "Valve Coefficient" 20 "Valve Body Size" '2"' "Max Valve Capacity" $'105\tNm3/Hr' \
              "Valve Capacity Utilized (%)" 96
wine "$directory/size_valves.exe" --quiet "Z:$PWD/docs/examples/tanks.csv" 2>/dev/null | tr -d '\r' >"$scratch/sized.csv" || true
diff <(tr -d '\r' <docs/examples/tanks_sized.csv) "$scratch/sized.csv" || fail "size_valves gives another answer"
wine "$directory/size_valves.exe" --verify >"$scratch/report.txt" 2>/dev/null ||
    fail "the verification list does not agree:"$'\n'"$(<"$scratch/report.txt")"
leave

echo "== Decimal commas"
open de_DE.UTF-8
sizePad
expectResults "Specific Gravity - Blanketing Gas" "0,97" "Valve Coefficient" 1
press alt+o
typeText "100,5"
press alt+s
expectResults "Pump-Out Rate" $'100,5\tgpm' "Total Flow Rate" $'1042\tSCFH'
leave

echo "== A page on a print queue"
SIZING_CHECK_SCRATCH=$scratch tests/end_to_end/print_check.py --queue "$PWD/packaging/windows/check.sh" --print "$program"
gs -q -dBATCH -dNOPAUSE -dTextAlphaBits=4 -dGraphicsAlphaBits=4 -sDEVICE=png16m -r60 "-sOutputFile=$pictures/page-%d.png" "$scratch/page.ps"
[[ ! -e $pictures/page-2.png ]] || fail "more than one page"
# Without their margins, for the papers differ; Debian's is of 96 dpi.
convert docs/pictures/summary.png -resize 62.5% -fuzz 5% -trim +repage -blur 0x2 "$scratch/debian.png"
convert "$pictures/page-1.png" -fuzz 5% -trim +repage -resize "$(identify -format '%wx%h!' "$scratch/debian.png")" \
        -blur 0x2 "$scratch/windows.png"
difference=$({ compare -metric RMSE "$scratch/windows.png" "$scratch/debian.png" null: 2>&1 || true; } | sed 's/.*(\(.*\))/\1/')
echo "the page differs from that of Debian by $difference"
awk -v difference="$difference" 'BEGIN { exit !(difference < 0.06) }' || fail "the page is another one"

echo "== A missing, a read-only and a held data file"
mv "$directory/capacities.mdb" "$scratch/capacities.mdb"
open
sizePad
expectResults "Comments/Notes" "You have exceeded the maximum available valve capacity for the given supply pressure."
chmod 444 "$scratch/capacities.mdb"
cp -p "$scratch/capacities.mdb" "$directory/capacities.mdb"
press alt+s
expectResults "Valve Coefficient" 1
cat >"$scratch/hold.c" <<'HOLD'
#include <stdio.h>
#include <windows.h>
int main(int argc, char** argv)
{
    if (argc != 2 || CreateFileA(argv[1], GENERIC_READ, 0, 0, OPEN_EXISTING, 0, 0) == INVALID_HANDLE_VALUE)
        return 1;
    puts("held");
    fflush(stdout);
    Sleep(600000);
    return 0;
}
HOLD
x86_64-w64-mingw32-gcc-posix "$scratch/hold.c" -o "$scratch/hold.exe"
(cd "$directory" && exec wine "$scratch/hold.exe" capacities.mdb >"$scratch/held") &
holder=$!
await "the data file to be held" grep -q held "$scratch/held"
press alt+s
expectResults "Comments/Notes" "You have exceeded the maximum available valve capacity for the given supply pressure."
kill "$holder"
wine taskkill /f /im hold.exe >/dev/null 2>&1 || true
sleep 1
press alt+s
expectResults "Valve Coefficient" 1

echo "== Installing once more, beside the running program and after it"
chmod 644 "$directory/capacities.mdb"
touch "$directory/capacities.mdb" # the user's own from now on
own=$(cksum <"$directory/capacities.mdb")
wine "$installer" /S && fail "installs over the running program"
leave
wine "$installer" /S || fail "does not install over the older version"
[[ $(cksum <"$directory/capacities.mdb") == "$own" ]] || fail "the user's data file is not kept"

echo "== Removing"
echo changed >>"$directory/capacities.mdb"
wine "$directory/uninstall.exe" /S
await "the end of the program's files" test ! -e "$program"
sleep 2
left=$(find "$directory" -type f | sed 's|.*/||' | sort | tr '\n' ' ')
[[ $left == "capacities.mdb " ]] || fail "removal leaves $left"
find "$WINEPREFIX/drive_c" -name 'Halvor-ORM*.lnk' | grep -q . && fail "the entry in the start menu stays"
rm -r "$directory"
wine "$installer" /S
await "the installed program" test -e "$directory/uninstall.exe"
TZ=Asia/Tokyo wine "$directory/uninstall.exe" /S
await "the end of the directory" test ! -e "$directory"
sleep 1
wine reg query 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\blanketing-valve-sizing' >/dev/null 2>&1 &&
    fail "the registry entry stays"
echo "== Everything held; see $pictures"
