#!/usr/bin/env python3
"""Works the real program by keystrokes and checks what a screen reader is told on the way.

usage: speech_check.py PROGRAM

It has a display, a session bus and an accessibility bus of its own. Exit status 77 (skipped) where a tool is missing, 1
on a fault and, in CI, on a missing tool.
"""

import os
import shutil
import subprocess
import sys
from pathlib import Path

from driver import (MAIN, MESSAGE, PATIENCE, SETUP, close_message, display, enter, expect, focus, home, need, opened,
                    press, run, wait_for, windows)

TOOLS = "dbus-run-session Xvfb xdotool".split()
PYTHON = "/usr/bin/python3"  # the system's own, which its package of pyatspi is for

# Keys, and what is said then: name and description of the control that gets the focus ("" when it stays), and the
# beginning of an announcement. A slow display gives all waiting keys one time, and the same key twice at one time is a
# held one: no key comes twice in a row. While somebody listens, Qt asks the registry before it hands on a key, but
# not before a shortcut acts: no step has a shortcut behind typed keys, or a typed key behind one that opens a menu.
SETUP_WALK = [
    ("alt+3", "Series 63", "", ""),  # refills lists, which do not have the focus
    ("alt+o", "Notes", "Printed on the summary.", ""),
    ("alt+o", "ORM Representative", "Printed on the summary.", ""),
    ("Tab", "PSI", "", ""),  # the list, and which entry
]
SIZED = 'Cv 1, body size 1", capacity 2560 SCFH, 41 % utilized.'
MAIN_WALK = [
    ("Tab", "Supply Pressure of Blanketing Gas", "PSI", ""),  # empty
    ("alt+s", "", "", "Please enter Pressure and Pump-Rate information."),  # of the box that has the focus
    ("6 0 Tab", "Tank Volume:", "Gallons", ""),
    ("shift+F1", "", "", "Volume of the tank, in Gallons: above 0, up to 7560000."),
    ("Escape", "", "", ""),  # the help goes; what is typed while it is there may be its own
    ("1 0 1 0 1 Tab", "Nitrogen", "", ""),
    ("alt+s", "Select Valve Size", "", SIZED),
    ("Return", "", "", SIZED),  # once more
    ("alt+t", "Print", "Prints the summary", "Sent to Laser_1."),
    ("alt+h", "User Guide", "", ""),
    ("Escape", "", "", ""),
    ("shift+F10", "User Guide", "", ""),
    ("Escape", "", "", ""),
    ("ctrl+shift+c", "", "", "Results copied."),
    ("alt+e", "Save Summary as PDF...", "", ""),
    ("r", "", "", "Nothing is sized: row 1 of the copied ones, "),  # results are no list
]
BAD_WALK = [
    ("alt+c", "Clear Current", "Empties entries and results", "Entries and results are cleared."),
    ("alt+t", "Print", "", "You must size a valve before printing."),
    ("alt+o", "Pump-Out Rate", "gpm", ""),
    ("1 period 2 period 1 Tab", "Supply Pressure of Blanketing Gas", "PSI", ""),
    ("6 0 Tab", "Tank Volume:", "Gallons", ""),
    ("1 0 1 0 1 Tab", "Nitrogen", "", ""),
    ("alt+s", "Pump-Out Rate", "", "Not a number: digits and one '.' only. Largest rate"),
    ("1 0 1 Tab", "Supply Pressure of Blanketing Gas", "PSI", ""),
]
UNREADABLE = ("alt+s", "Select Valve Size", "", "You have exceeded")
# A stand-in for the program that talks with the print scheduler. It prints, finds no printer or fails, as the file says.
PRINT_QUEUE = """#!/bin/sh
mode=$(cat "$0.mode")
case $mode$1 in
    nonecount) echo 0 ;;
    *count) echo 1 ;;
    goodprint) echo none; read -r size; head -c "$size" >/dev/null; echo Laser_1 ;;
    *) exit 1 ;;
esac
"""


class Listener:
    """Keeps which controls were said to have got the focus, and what was announced."""

    def __init__(self):
        import pyatspi
        from gi.repository import Atspi, GLib
        Atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)
        self.desktop = pyatspi.Registry.getDesktop(0)
        self.context = GLib.MainContext.default()
        self.focused, self.announced = [], []
        pyatspi.Registry.registerEventListener(self.on_showing, "object:state-changed:showing")
        pyatspi.Registry.registerEventListener(self.on_focus, "object:state-changed:focused")

    def on_focus(self, event):
        if event.detail1:
            self.focused.append(event.source)

    def on_showing(self, event):
        if event.detail1 and event.source.getRoleName() == "notification":
            self.announced.append(event.source.name)

    def listen(self):
        while self.context.iteration(False):
            pass

    def hear(self, what, condition):
        wait_for(what, lambda: self.listen() or condition())

    def wait_for_program(self, started):
        """What a program does before it is among those that screen readers know, nobody is told."""
        def is_known():
            self.programs = [one for one in self.desktop if one and one.get_process_id() == started.pid]
            return self.programs
        self.process = str(started.pid)
        self.hear("the program", is_known)

    def wait_for_focus(self, name):
        self.hear(f"the focus on {name}", lambda: self.focused and self.focused[-1].name == name)

    def take_turns(self):
        """Asks the program, the registry and the program again. Each answers after it has done what came before."""
        for one in (self.programs[0], self.desktop, self.programs[0]):
            one.get_state_set()
        self.listen()

    def take_announcement(self, keys, beginning):
        """What is announced beside it is found here or in a later step."""
        self.hear(f"what is said after {keys}", lambda: self.announced or not beginning)
        self.take_turns()
        said = self.announced.pop(0) if beginning else ""
        expect(said.startswith(beginning) and not self.announced, f"after {keys}: announced {[said, *self.announced]}")
        return said

    def press(self, keys, name, description, announcement):
        self.focused.clear()
        alt = keys.startswith("alt+")
        if alt:  # Qt has to hand it on before the other key comes: Alt closes a menu that is open
            run("xdotool", "keydown", "alt")
            self.take_turns()
        press(*keys.removeprefix("alt+").split(), *["keyup", "alt"] * alt)
        if keys == "Escape":
            wait_for("the end of the help", lambda: len(windows("--pid", self.process)) == 1)
        if name:
            self.wait_for_focus(name)
        announced = self.take_announcement(keys, announcement)
        said = [source.name for source in self.focused if source.name]
        expect(not name or said[-1] == name and len(set(said)) <= 2, f"after {keys}: heard of {said}")
        heard = self.focused[-1].description if name else ""
        expect(heard.startswith(description), f"after {keys}: described as {heard!r}")
        print(f"ok: {keys}: {name} {heard} {announced}", flush=True)
        return announced

    def save(self, file):
        press("ctrl+s")
        focus("^Save Summary as PDF")
        self.wait_for_focus("File name:")
        enter(file.name)
        press("Return")
        self.hear("the file", file.exists)
        focus(MAIN)
        print("ok:", self.take_announcement("saving", f"Saved as {file.name}."), flush=True)

    def answer_message(self, keys, text):
        self.focused.clear()
        press(keys)
        focus(MESSAGE)
        self.wait_for_focus("OK")
        names = [child.name for child in self.focused[-1].parent.parent]
        expect(text in names, f"the message says {names}")
        self.take_announcement(keys, "")
        close_message()
        print(f"ok: {keys}: {text}", flush=True)


def walk(program):
    listener = Listener()
    with opened(program) as started:
        listener.wait_for_program(started)
        focus(SETUP)
        for step in SETUP_WALK:
            listener.press(*step)
        press("alt+1", "alt+c")
        focus(MAIN)
        listener.wait_for_focus("Pump-Out Rate")
        window = listener.focused[-1].parent.parent.parent
        expect(window.getRoleName() == "frame", f"the window is a {window.getRoleName()}")
        enter("101")
        for step in MAIN_WALK:
            listener.press(*step)
        listener.save(Path("Documents/saved.pdf"))  # a path with a random name could have a key twice in a row
        Path("print_queue.mode").write_text("bad")
        listener.answer_message("alt+t", "cmdPrint: A printing error has occurred")
        for step in BAD_WALK:
            listener.press(*step)
        os.truncate("capacities.mdb", 100)
        reason = listener.press(*UNREADABLE)
        expect("damaged" in reason, f"the reason is not said: {reason}")
        Path("print_queue.mode").write_text("none")
        listener.answer_message("alt+t", "There is no printer installed on this computer.")


def main(program):
    absent = subprocess.run([PYTHON, "-c", "import pyatspi"], stderr=subprocess.DEVNULL).returncode
    need(*TOOLS, *["pyatspi"] * absent)
    program, check = Path(program).resolve(), Path(__file__).resolve()
    with home(), display():  # the walk may spoil the files there
        os.environ.update(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", NO_AT_BRIDGE="1", SPEECH_CHECK_WALKS="1")
        shutil.copy(program, program.name)
        shutil.copy(program.with_name("capacities.mdb"), "capacities.mdb")
        Path("Documents").mkdir()  # where the file dialog begins
        Path("print_queue").write_text(PRINT_QUEUE)
        Path("print_queue").chmod(0o755)
        Path("print_queue.mode").write_text("good")
        return subprocess.run(["dbus-run-session", "--", PYTHON, check, Path(program.name).absolute()]).returncode


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit((walk if os.environ.get("SPEECH_CHECK_WALKS") else main)(sys.argv[1]))
