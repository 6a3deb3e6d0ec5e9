#!/usr/bin/env python3
"""Prints from the real program through a print scheduler that stops answering, is slow, or talks nonsense.

usage: slow_scheduler_check.py PROGRAM [FAULT...]     a fault: a number of answers before the silence (a print asks nine
                                               questions), late, drip, noise

Each must end in the message of a failed print, with a window that works and nothing left running. Exit status 77
(skipped) where a tool is missing, 1 on a fault and, in CI, on a missing tool.
"""

import os
import socket
import sys
import threading
import time
from contextlib import suppress
from pathlib import Path

from driver import MESSAGE, SETUP, close_message, display, expect, focus, home, need, press, run, wait_for, windows
from print_check import CUSTOMER, PAD, TOOLS, add_queue, jobs, scheduler, sized

QUESTIONS = 9  # of one print
FAULTS = ["0", "6", "late", "drip"]  # the others by hand


class Between:
    """Stands between the program and the scheduler and hands their talk on as the fault has it."""

    def __init__(self, fault):
        self.fault, self.answers = fault, 0
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind("between")
        self.listener.listen(20)
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            asker, _ = self.listener.accept()
            threading.Thread(target=self.talk, args=(asker,), daemon=True).start()

    def talk(self, asker):
        answerer = socket.socket(socket.AF_UNIX)
        answerer.connect("socket")
        threading.Thread(target=self.ask, args=(asker, answerer), daemon=True).start()
        try:
            while answer := answerer.recv(1 << 20):
                self.hand_on(asker, answer)
        except OSError:
            pass  # the program has gone
        asker.close()

    def ask(self, asker, answerer):
        try:
            while question := asker.recv(1 << 20):
                if question[:4] == b"POST":
                    self.answers += 1
                if not self.fault.isdigit() or self.answers <= int(self.fault):
                    answerer.sendall(question)
        except OSError:
            pass
        answerer.close()

    def hand_on(self, asker, answer):
        if self.fault == "late":
            time.sleep(1)
        if self.fault == "noise":
            answer = b"\x7f" * 4096
        if self.fault == "drip":
            for byte in answer:
                asker.sendall(bytes([byte]))
                time.sleep(0.1)
        else:
            asker.sendall(answer)


def left_running(process):
    """The names of its threads and children. Threads of the toolkit's pool are left out: they end some time later."""
    names = []
    for status in [*Path(f"/proc/{process}/task").glob("*/stat"), *Path("/proc").glob("[0-9]*/stat")]:
        with suppress(OSError):  # one that has just gone
            name, _, rest = status.read_text().partition("(")[2].rpartition(")")
            if "task" in status.parts and "pooled" not in name or rest.split()[1] == str(process):
                names.append(name)
    return sorted(names)


def check(program, fault):
    os.environ["CUPS_SERVER"] = f"{os.getcwd()}/between"
    Between(fault)
    before = jobs()
    with sized(program, PAD, CUSTOMER) as started:
        running = left_running(started.pid)
        start = time.monotonic()
        press("alt+t")
        wait_for("the end of the print", lambda: windows("--name", MESSAGE) or len(jobs()) > len(before))
        seconds = time.monotonic() - start
        outcome = "a message" if windows("--name", MESSAGE) else "a page"
        expect(outcome == "a message" or fault.isdigit() and int(fault) >= QUESTIONS, f"printed with the fault {fault}")
        if outcome == "a message":
            focus(MESSAGE)
            close_message()
        wait_for(f"nothing to be left running but {running}", lambda: left_running(started.pid) == running)
        press("alt+n")
        focus(SETUP)
        print(f"ok: {fault}: {outcome} after {seconds:.1f} s", flush=True)
    os.environ["CUPS_SERVER"] = f"{os.getcwd()}/socket"
    os.unlink("between")


def main(program, *faults):
    need(*TOOLS)
    program = Path(program).resolve()
    with home(), scheduler(), display():
        add_queue("letter")
        run("lpadmin", "-d", "letter")
        for fault in faults or FAULTS:
            check(program, fault)
    return 0


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
