#!/usr/bin/env python3
"""Works the real program by keystrokes and checks what a screen reader is told on the way.

usage: speech_check.py PROGRAM

It has a display, a session bus and an accessibility bus of its own. Exit status 77 (skipped) where a tool is missing, 1 on
a fault and, in CI, on a missing tool.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

TOOLS = "dbus-run-session Xvfb xdotool".split()
PYTHON = "/usr/bin/python3"  # the system's own, which its package of pyatspi is for
PATIENCE = 30  # seconds for any one thing to happen
SETUP = "^Halvor-ORM  Blanketing Valve Sizing Application"
MAIN = "^Halvor-ORM Blanketing Valve Sizing Application"
BOX = "^Halvor-ORM Blanketing Valve Sizing$"

# Keys, and what is said then: name and description of the control that gets the focus ("" when it stays), and the
# beginning of an announcement. A slow display gives all waiting keys one time, and the same key twice at one time is a
# held one: no key comes twice in a row. While somebody listens, Qt hands typed keys on later than shortcuts: no step has a
# shortcut behind typed keys.
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
    ("alt+e r", "", "", "Nothing is sized: row 1 of the copied ones, "),  # results are no list
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


def expect(holds, otherwise):
    if not holds:
        sys.exit(f"FAULT: {otherwise}")


def windows(*wanted):
    found = subprocess.run(["xdotool", "search", "--onlyvisible", *wanted], text=True, stdout=subprocess.PIPE)
    return found.stdout.split()


def wait_for(what, condition, meanwhile=lambda: time.sleep(0.05)):
    end = time.monotonic() + PATIENCE
    while not condition():
        expect(time.monotonic() < end, f"waited in vain for {what}")
        meanwhile()


def focus_window(*wanted):
    found = []  # a search ends with nothing when a bubble goes in the middle of it
    wait_for(f"the window {wanted}", lambda: found.extend(windows(*wanted)) or found)
    subprocess.run(["xdotool", "windowfocus", "--sync", found[-1]], check=True)


class Listener:
    """Keeps which controls were said to have got the focus, and what was announced."""

    def __init__(self):
        import pyatspi
        from gi.repository import Atspi, GLib
        Atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)
        self.desktop = pyatspi.Registry.getDesktop(0)
        self.process = None
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

    def listen(self, seconds):
        end = time.monotonic() + seconds
        while self.context.iteration(False) or time.monotonic() < end:
            time.sleep(0.001)

    def wait_for_program(self, process):
        """What a program does before it is among those that screen readers know, nobody is told."""
        self.process = process
        wait_for("the program", lambda: process in [one.get_process_id() for one in self.desktop if one],
                 lambda: self.listen(0.1))

    def wait_for_focus(self, name):
        wait_for(f"the focus on {name}", lambda: self.focused and self.focused[-1].name == name, lambda: self.listen(0.1))

    def press(self, keys, name, description, announcement):
        if self.focused:  # its answer comes after all that it has said until now
            self.focused[-1].get_state_set()
            self.listen(0)
        self.focused.clear()
        self.announced.clear()
        subprocess.run(["xdotool", "key", "--delay", "20", *keys.split()], check=True)
        if keys == "Escape":
            wait_for("the end of the help", lambda: len(windows("--pid", str(self.process))) == 1)
        if name:
            self.wait_for_focus(name)
        wait_for(f"what is said after {keys}", lambda: self.announced or not announcement, lambda: self.listen(0.1))
        self.listen(0.3)
        said = [source.name for source in self.focused if source.name]
        expect(not name or said[-1] == name and len(set(said)) <= 2, f"after {keys}: heard of {said}")
        heard = self.focused[-1].description if name else ""
        expect(heard.startswith(description), f"after {keys}: described as {heard!r}")
        expect(len(self.announced) == bool(announcement), f"after {keys}: announced {self.announced}")
        expect("".join(self.announced).startswith(announcement), f"after {keys}: announced {self.announced}")
        print(f"ok: {keys}: {name} {heard} {' '.join(self.announced)}", flush=True)

    def save(self, file):
        self.announced.clear()
        subprocess.run(["xdotool", "key", "ctrl+s"], check=True)
        focus_window("--name", "^Save Summary as PDF")
        self.wait_for_focus("File name:")
        subprocess.run(["xdotool", "type", str(file)], check=True)
        subprocess.run(["xdotool", "key", "Return"], check=True)
        wait_for("the file", file.exists, lambda: self.listen(0.1))
        focus_window("--name", MAIN)
        wait_for("what is said", lambda: self.announced, lambda: self.listen(0.1))
        self.listen(0.3)
        expect(self.announced == [f"Saved as {file.name}."], f"after saving: announced {self.announced}")
        print(f"ok: saved: {self.announced[0]}", flush=True)

    def answer_message(self, keys, text):
        self.focused.clear()
        self.announced.clear()
        subprocess.run(["xdotool", "key", keys], check=True)
        focus_window("--name", BOX)
        self.wait_for_focus("OK")
        names = [child.name for child in self.focused[-1].parent.parent]
        expect(text in names, f"the message says {names}")
        expect(not self.announced, f"beside the message: announced {self.announced}")
        subprocess.run(["xdotool", "key", "Return"], check=True)
        wait_for("the end of the message", lambda: not windows("--name", BOX))
        focus_window("--name", MAIN)
        print(f"ok: {keys}: {text}", flush=True)


def walk(program):
    directory = pathlib.Path(program).parent
    listener = Listener()
    with subprocess.Popen([program]) as started:
        try:
            listener.wait_for_program(started.pid)
            focus_window("--name", SETUP)
            for step in SETUP_WALK:
                listener.press(*step)
            subprocess.run(["xdotool", "key", "alt+1", "alt+c"], check=True)
            focus_window("--name", MAIN)
            listener.wait_for_focus("Pump-Out Rate")
            window = listener.focused[-1].parent.parent.parent
            expect(window.getRoleName() == "frame", f"the window is a {window.getRoleName()}")
            subprocess.run(["xdotool", "type", "101"], check=True)
            for step in MAIN_WALK:
                listener.press(*step)
            listener.save(directory / "saved.pdf")
            (directory / "print_queue.mode").write_text("bad")
            listener.answer_message("alt+t", "cmdPrint: A printing error has occurred")
            for step in BAD_WALK:
                listener.press(*step)
            os.truncate(directory / "capacities.mdb", 100)
            listener.press(*UNREADABLE)
            expect("damaged" in listener.announced[0], f"the reason is not said: {listener.announced}")
            (directory / "print_queue.mode").write_text("none")
            listener.answer_message("alt+t", "There is no printer installed on this computer.")
        finally:
            started.terminate()


def main(program):
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    missing += ["pyatspi"] * subprocess.run([PYTHON, "-c", "import pyatspi"], stderr=subprocess.DEVNULL).returncode
    if missing:
        print(f"skipped: this check needs {', '.join(missing)}")
        return 1 if os.environ.get("CI") else 77
    for name in [name for name in os.environ if name.startswith(("LANG", "QT_"))]:
        del os.environ[name]
    display = f":{1000 + os.getpid() % 50000}"
    os.environ.update(LC_ALL="C.UTF-8", DISPLAY=display, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                      NO_AT_BRIDGE="1", SPEECH_CHECK_WALKS="1")
    server = subprocess.Popen(["Xvfb", display, "-displayfd", "1", "-screen", "0", "1024x768x24", "-noreset", "-r"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    try:
        expect(server.stdout.readline(), "the display does not start")
        with tempfile.TemporaryDirectory() as directory:  # whose files the walk may spoil
            copy = pathlib.Path(directory) / pathlib.Path(program).name
            shutil.copy(program, copy)
            shutil.copy(pathlib.Path(program).with_name("capacities.mdb"), directory)
            copy.with_name("print_queue").write_text(PRINT_QUEUE)
            copy.with_name("print_queue").chmod(0o755)
            copy.with_name("print_queue.mode").write_text("good")
            return subprocess.run(["dbus-run-session", "--", PYTHON, __file__, copy]).returncode
    finally:
        server.terminate()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit((walk if os.environ.get("SPEECH_CHECK_WALKS") else main)(sys.argv[1]))
