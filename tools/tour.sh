#!/bin/bash
# Runs the program on a virtual X display and drives it from outside, by keystrokes alone, through one pad and one depad
# sizing with its own data file, and prints one summary into a print queue of its own. Leaves a picture of each screen and
# the summary as PDF and PNG: tour.sh PROGRAM PICTURE_DIRECTORY
set -euo pipefail

program=$(readlink -f "$1")
pictures=$2
setupTitle='Halvor-ORM  Blanketing Valve Sizing Application - Version ' # two blanks; the version follows
mainTitle='Halvor-ORM Blanketing Valve Sizing Application - Version '
resultLabels='400x50+90+350' # pixels of the main window: Cv, body size, capacity and share, empty until a valve is chosen
patience=60                  # seconds that any one thing may take; a loaded machine is slow, not broken
caret=50                     # pixels: more than a blinking cursor, less than any result

scratch=$(mktemp -d)
display=
displayServer=
application=
window=

cleanUp() {
    local process
    for process in $application $displayServer; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "$scratch"
}
trap cleanUp EXIT

fail() {
    local found
    echo "tour: $*" >&2
    for found in $(xdotool search --onlyvisible --name . 2>/dev/null); do
        echo "tour: on the display: \"$(xdotool getwindowname "$shown")\"" >&2
    done
    [[ -n $window ]] && takePicture "$pictures/failed.png" && echo "tour: see $pictures/failed.png" >&2
    sed 's/^/tour: the program says: /' "$scratch/program.log" >&2
    exit 1
}

# Polls until COMMAND succeeds: await WHAT COMMAND...
await() {
    local what=$1 deadline=$((SECONDS + patience)) status=0
    shift
    until "$@"; do
        if ! kill -0 "$application" 2>/dev/null; then
            wait "$application" || status=$?
            fail "the program ended with status $status while waiting for $what"
        fi
        ((SECONDS < deadline)) || fail "waited $patience seconds in vain for $what"
        sleep 0.1
    done
}

# Number of pixels that differ between two pictures, or between the same rectangle of both: differing A B [RECTANGLE]
differing() {
    local count
    count=$(compare -metric AE "$1${3:+[$3]}" "$2${3:+[$3]}" null: 2>&1) || (($? == 1)) || fail "no comparison: $count"
    printf '%.0f\n' "$count"
}

takePicture() {
    import -silent -window "$window" "png:$1"
}

# True when the window looks the same twice in a row; FILE is its picture: isStill FILE
isStill() {
    takePicture "$1"
    sleep 0.2
    takePicture "$scratch/again.png"
    (($(differing "$1" "$scratch/again.png") < caret))
}

# True when the only window is the one whose title begins so, and has the keyboard. No window manager runs here, so the focus is
# given by hand.
hasKeyboard() {
    window=$(xdotool search --onlyvisible --name '^Halvor-ORM ' 2>/dev/null) &&
        [[ $(xdotool getwindowname "$window" 2>/dev/null) == "$1"* ]] &&
        xdotool windowfocus "$window" 2>/dev/null &&
        [[ $(xdotool getwindowfocus -f) == "$window" ]]
}

valveIsShown() {
    takePicture "$scratch/now.png"
    (($(differing "$scratch/entered.png" "$scratch/now.png" "$resultLabels") > caret))
}

keepPicture() {
    await "the window to come to rest for $1.png" isStill "$pictures/$1.png"
    echo "$pictures/$1.png"
}

hasChanged() {
    takePicture "$scratch/now.png"
    (($(differing "$scratch/before.png" "$scratch/now.png") > caret))
}

# Makes the choices of the setup form that differ from its defaults, each of which must show, and goes on to the main
# form: setUp NAME KEY...
setUp() {
    local name=$1 key
    shift
    await "the setup form" hasKeyboard "$setupTitle"
    for key in "$@"; do
        await "the setup form to come to rest" isStill "$scratch/before.png"
        xdotool key "$key"
        await "an effect of $key" hasChanged
    done
    keepPicture "$name"
    xdotool key alt+c
    await "the main form" hasKeyboard "$mainTitle"
}

# Types the entries (the first goes into the pump rate box) and has the valve selected: selectValve NAME ENTRY|Tab...
selectValve() {
    local name=$1 entry
    shift
    for entry in "$@"; do
        if [[ $entry == Tab ]]; then xdotool key Tab; else xdotool type "$entry"; fi
    done
    await "the main form to come to rest" isStill "$scratch/entered.png"
    xdotool key alt+s
    await "a valve in the main form" valveIsShown
    keepPicture "$name"
}

mkdir -p "$pictures"
rm -f "$pictures"/{pad-setup,pad-sizing,depad-setup,depad-sizing,summary,failed}.png "$pictures"/*.pdf
mkfifo "$scratch/display"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -dpi 96 -nolisten tcp -noreset -r 3>"$scratch/display" 2>"$scratch/program.log" &
displayServer=$!
read -r -t "$patience" display <"$scratch/display" || fail "the virtual display does not start"
export DISPLAY=:$display

# Plain settings, so that the pictures are the same on every machine.
env -u QT_SCALE_FACTOR -u QT_STYLE_OVERRIDE QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8 XDG_RUNTIME_DIR="$scratch" \
    DBUS_SESSION_BUS_ADDRESS=disabled: \
    "$program" </dev/null >"$scratch/program.log" 2>&1 &
application=$!

setUp pad-setup
selectValve pad-sizing 100 Tab 60 Tab 10000 # gpm, PSI, gallons
xdotool key alt+n

setUp depad-setup alt+3 alt+d alt+m
selectValve depad-sizing 50 Tab 50 Tab 500 Tab Tab Tab Tab 60 # m3/h, mbar, m3, then past four boxes the flash point
xdotool key alt+x

timeout "$patience" tail --pid="$application" -s 0.1 -f /dev/null || fail "the program did not end"
wait "$application" || fail "the program ended with status $?"

check=$(dirname "$(readlink -f "$0")")/../tests/end_to_end/print_check.py
CI=true "$check" "$program" "$scratch" >&2 # in CI a missing tool is no excuse
mv "$scratch/letter.pdf" "$pictures/summary.pdf"
pdftoppm -png -singlefile -r 96 "$pictures/summary.pdf" "$pictures/summary"
echo "$pictures/summary.pdf"
echo "$pictures/summary.png"
