#!/usr/bin/env python3
"""Takes the program through one pad and one depad sizing with its own data file, and prints summaries.

usage: tour.py PROGRAM PICTURE_DIRECTORY

It is worked by keystrokes on a virtual display, and prints into a queue that keeps the jobs. Leaves in the directory a
picture of each screen, and one summary as PDF and PNG; on a fault failed.png, a picture of the display.
"""

import operator
import os
import shutil
import subprocess
import sys
import time
from contextlib import redirect_stdout
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/end_to_end"))
from driver import (MAIN, PATIENCE, SETUP, display, enter, expect, focus, home, need, opened, press, run, wait_for,
                    windows)
from print_check import TOOLS, check, scheduler

RESULTS = "400x50+90+350"  # pixels of the main window: Cv, body size, capacity and share, empty until a valve is chosen
CARET = 3 * 50  # bytes, three a pixel: more than a blinking cursor, less than any result
ANY_FORM = "^Halvor-ORM "
LEFT = "pad-setup.png pad-sizing.png depad-setup.png depad-sizing.png summary.png summary.pdf failed.png".split()


def look(window, area):
    """The pixels of an area of the window, or of the whole."""
    crop = ["-crop", area] if area else []
    command = ["import", "-silent", "-window", window, *crop, "-depth", "8", "ppm:-"]
    return subprocess.run(command, check=True, capture_output=True, timeout=PATIENCE).stdout


def differ(one, other):
    return len(one) != len(other) or sum(map(operator.ne, one, other)) > CARET


def come_to_rest(window, picture):
    """Takes pictures until the window is painted and looks the same before and after one."""
    def is_still():
        before = look(window, None)
        run("import", "-silent", "-window", window, f"png:{picture}")
        time.sleep(0.2)  # rest cannot be seen without time
        return not differ(before, look(window, None)) and len(set(before)) > 20
    wait_for(f"the window to come to rest for {picture}", is_still)


def keep(window, picture):
    come_to_rest(window, picture)
    print(picture, flush=True)


def press_and_see(key, window, area=None):
    """Presses a key that must change what the area shows."""
    come_to_rest(window, "before.png")
    before = look(window, area)
    press(key)
    wait_for(f"an effect of {key}", lambda: differ(before, look(window, area)))


def form(title):
    """Waits until the form is the only one, and gives it the keyboard."""
    window = focus(title)
    wait_for("the end of the other form", lambda: windows("--name", ANY_FORM) == [window])
    return window


def set_up(picture, *keys):
    """Makes the choices that differ from the defaults of the setup form, and goes on to the main form."""
    window = form(SETUP)
    for key in keys:
        press_and_see(key, window)
    keep(window, picture)
    press("alt+c")


def select_valve(picture, entries):
    """Types the entries, the first into the pump rate's box, and has the valve selected."""
    window = form(MAIN)
    enter(entries)
    press_and_see("alt+s", window, RESULTS)
    keep(window, picture)


def main(program, pictures):
    os.environ["CI"] = "true"  # a missing tool is no excuse here
    need(*TOOLS, "import", "pdftoppm")
    program, pictures = Path(program).resolve(), Path(pictures).resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    for old in LEFT:
        (pictures / old).unlink(missing_ok=True)
    with home(), display():
        with opened(program, pictures / "failed.png") as started:
            set_up(pictures / "pad-setup.png")
            select_valve(pictures / "pad-sizing.png", "100\t60\t10000")  # gpm, PSI, gallons
            press("alt+n")
            set_up(pictures / "depad-setup.png", "alt+3", "alt+d", "alt+m")
            select_valve(pictures / "depad-sizing.png", "50\t50\t500\t\t\t\t60")  # m3/h, mbar, m3, flash point
            press("alt+x")
            expect(started.wait(PATIENCE) == 0, f"the program ended with status {started.returncode}")
        with scheduler(), redirect_stdout(sys.stderr):
            check(program, Path.cwd())
        summary = shutil.copy("letter.pdf", pictures / "summary.pdf")
        run("pdftoppm", "-png", "-singlefile", "-r", "96", summary, summary.with_suffix(""))
        print(summary, summary.with_suffix(".png"), sep="\n")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
