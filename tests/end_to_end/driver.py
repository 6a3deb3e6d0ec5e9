"""Works the real program from outside, by keystrokes on a virtual display: for the checks here and for tools/tour.py.

A loaded machine is slow, not broken. So nothing here waits for a time: every wait is for a condition, and patient.
"""

import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from contextlib import contextmanager
from pathlib import Path

PATIENCE = 60  # seconds for any one thing to happen
SETUP = "^Halvor-ORM  Blanketing Valve Sizing Application"  # two blanks; the version follows
MAIN = "^Halvor-ORM Blanketing Valve Sizing Application"
MESSAGE = "^Halvor-ORM Blanketing Valve Sizing$"


def expect(holds, otherwise):
    if not holds:
        sys.exit(f"FAULT: {otherwise}")


def need(*tools):
    """Ends the script where a tool is missing: as skipped, in CI as failed."""
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    missing = [tool for tool in tools if not shutil.which(tool)]
    if missing:
        print(f"this cannot run without {', '.join(missing)}")
        sys.exit(1 if os.environ.get("CI") else 77)


def run(*command, check=True):
    done = subprocess.run(command, text=True, capture_output=True, timeout=PATIENCE)
    expect(done.returncode == 0 or not check, f"{command}: {done.stderr}")
    return done.stdout


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while not condition():
        for process in Started.running:
            expect(process.poll() is None, f"{process.args[0]} ended with status {process.returncode}, before {what}")
        expect(time.monotonic() < end, f"waited {PATIENCE} seconds in vain for {what}")
        time.sleep(0.02)


class Started(subprocess.Popen):
    """A process that is ended with its block, however that ends."""

    running = []

    def __enter__(self):
        self.running.append(self)
        return super().__enter__()

    def __exit__(self, *exception):
        self.running.remove(self)
        self.terminate()
        try:
            self.wait(PATIENCE)
        except subprocess.TimeoutExpired:  # it hangs
            self.kill()
        super().__exit__(*exception)


@contextmanager
def home():
    """A temporary directory becomes the current one and the user's home. Settings of the real user have no effect."""
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("stopped"))
    for name in [name for name in os.environ if name.startswith(("LANG", "QT_", "XDG_", "PRINTER", "LPDEST"))]:
        del os.environ[name]
    with tempfile.TemporaryDirectory(prefix="end-to-end-", ignore_cleanup_errors=True) as directory:
        os.chdir(directory)
        os.mkdir("run", 0o700)
        os.environ.update(HOME=directory, XDG_RUNTIME_DIR=f"{directory}/run", LC_ALL="C.UTF-8",
                          DBUS_SESSION_BUS_ADDRESS="disabled:")
        yield


@contextmanager
def display():
    # A server that ends can remove the socket of the next server with its number. So each has a number of its own.
    os.environ.update(DISPLAY=f":{random.randrange(1000, 50000)}", QT_QPA_PLATFORM="xcb")
    command = f"Xvfb {os.environ['DISPLAY']} -displayfd 1 -screen 0 1280x1024x24 -dpi 96 -noreset -r"
    with Started(command.split(), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as server:
        expect(server.stdout.readline(), "the display does not start")
        yield


@contextmanager
def opened(program, picture=None):
    """The program. On a fault: which windows there are, a picture of the display, and what the program has said."""
    log = open("program.log", "w")
    with log, Started([program], stdin=subprocess.DEVNULL, stdout=log, stderr=log) as started:
        try:
            yield started
        except BaseException:
            shown = [run("xdotool", "getwindowname", window, check=False) for window in windows("--name", ".")]
            print("on the display:", *shown, "the program says:", Path("program.log").read_text(), file=sys.stderr)
            if picture:
                subprocess.run(["import", "-silent", "-window", "root", picture])
                print("see", picture, file=sys.stderr)
            raise


def windows(*wanted):
    """The visible windows that xdotool finds so."""
    while True:  # a search breaks off where a window vanishes in the middle of it, as bubbles do
        found = subprocess.run(["xdotool", "search", "--onlyvisible", *wanted], text=True, capture_output=True)
        if "X Error" not in found.stderr:
            return found.stdout.split()


def focus(title):
    """Waits for the window and gives it the keyboard, which no window manager does here. Returns the window."""
    found = []

    def has_keyboard():
        found[:] = windows("--name", title)
        focused = found and run("xdotool", "windowfocus", found[-1], "getwindowfocus", "-f", check=False)
        return focused and focused.strip() == found[-1]
    wait_for(f"the window {title}", has_keyboard)
    return found[-1]


def press(*keys):
    run("xdotool", "key", "--delay", "2", *keys)


def enter(text):
    run("xdotool", "type", "--delay", "2", text)


def close_message():
    press("Return")
    wait_for("the end of the message", lambda: not windows("--name", MESSAGE))
    focus(MAIN)
