#!/usr/bin/env python3
"""Works the real program by keystrokes and checks what a screen reader is told on the way.

usage: speech_check.py PROGRAM

It has a display, a session bus and an accessibility bus of its own. Exit status 77 (skipped) where a tool is missing, 1 on
a fault and, in CI, on a missing tool.
"""

import os
import shutil
import subprocess
import sys
import time

TOOLS = "dbus-run-session Xvfb xdotool".split()
PYTHON = "/usr/bin/python3"  # the system's own, which its package of pyatspi is for
PATIENCE = 30  # seconds for any one thing to happen
SETUP = "^Halvor-ORM  Blanketing Valve Sizing Application"
MAIN = "^Halvor-ORM Blanketing Valve Sizing Application"

# Keys, and what is said then: name and description of the control that gets the focus ("" when it stays), and the
# beginning of an announcement.
SETUP_WALK = [
    ("alt+3", "Series 63", "", ""),  # refills lists, which do not have the focus
    ("alt+o alt+o", "ORM Representative", "Printed on the summary.", ""),
    ("Tab", "PSI", "", ""),  # the list, and which entry
]
SIZED = 'Cv 1, body size 1", capacity 2560 SCFH, 41 % utilized.'
MAIN_WALK = [
    ("Tab", "Supply Pressure of Blanketing Gas", "PSI", ""),  # empty
    ("alt+s", "", "", "Please enter Pressure and Pump-Rate information."),  # of the box that has the focus
    ("6 0 Tab", "Tank Volume:", "Gallons", ""),
    ("shift+F1", "", "", "Volume of the tank, in Gallons: above 0, up to 7560000."),
    ("Escape 1 0 0 0 0 alt+s", "Select Valve Size", "", SIZED),
    ("Return", "", "", SIZED),  # once more
]


def expect(holds, otherwise):
    if not holds:
        sys.exit(f"FAULT: {otherwise}")


def focus_window(title):
    found = ["xdotool", "search", "--onlyvisible", "--name", title]
    end = time.monotonic() + PATIENCE
    while subprocess.run(found, stdout=subprocess.DEVNULL).returncode:
        expect(time.monotonic() < end, f"waited in vain for the window {title}")
        time.sleep(0.05)
    subprocess.run([*found, "windowfocus", "--sync"], check=True)


class Listener:
    """Keeps which controls were said to have got the focus, and what was announced."""

    def __init__(self):
        import pyatspi
        from gi.repository import GLib
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
        while time.monotonic() < end:
            while self.context.iteration(False):
                pass
            time.sleep(0.01)

    def press(self, keys, name, description, announcement):
        self.focused.clear()
        self.announced.clear()
        subprocess.run(["xdotool", "key", "--delay", "20", *keys.split()], check=True)
        end = time.monotonic() + PATIENCE
        said = []
        while name and said[-1:] != [name] or announcement and not self.announced:
            expect(time.monotonic() < end, f"after {keys}: heard of {said} and {self.announced}, not of {name}")
            self.listen(0.1)
            said = [source.name for source in self.focused]
        self.listen(0.3)
        said = [source.name for source in self.focused if source.name]
        expect(not name or said[-1] == name and len(set(said)) <= 2, f"after {keys}: heard of {said}")
        heard = self.focused[-1].description if name else ""
        expect(heard.startswith(description), f"after {keys}: described as {heard!r}")
        expect(len(self.announced) == bool(announcement), f"after {keys}: announced {self.announced}")
        expect("".join(self.announced).startswith(announcement), f"after {keys}: announced {self.announced}")
        print(f"ok: {keys}: {name} {heard} {' '.join(self.announced)}", flush=True)


def walk(program):
    listener = Listener()
    with subprocess.Popen([program]) as started:
        try:
            focus_window(SETUP)
            listener.listen(1)
            for step in SETUP_WALK:
                listener.press(*step)
            subprocess.run(["xdotool", "key", "alt+1", "alt+c"], check=True)
            focus_window(MAIN)
            listener.listen(1)
            expect(listener.focused[-1].name == "Pump-Out Rate", f"{listener.focused[-1].name} has the focus")
            frame = listener.focused[-1].parent.parent.getRoleName()
            expect(frame == "frame", f"the form is a {frame}")
            subprocess.run(["xdotool", "type", "100"], check=True)
            for step in MAIN_WALK:
                listener.press(*step)
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
    server = subprocess.Popen(["Xvfb", display, "-displayfd", "1", "-screen", "0", "1024x768x24", "-noreset"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    try:
        expect(server.stdout.readline(), "the display does not start")
        return subprocess.run(["dbus-run-session", "--", PYTHON, __file__, program]).returncode
    finally:
        server.terminate()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit((walk if os.environ.get("SPEECH_CHECK_WALKS") else main)(sys.argv[1]))
