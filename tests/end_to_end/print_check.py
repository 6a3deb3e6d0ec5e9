#!/usr/bin/env python3
"""Prints sizing summaries from the real program into a CUPS scheduler of its own and reads the jobs.

usage: print_check.py PROGRAM DIRECTORY      leaves the pages there; letter.pdf is the one with every row
       print_check.py --queue COMMAND...     runs a command beside a scheduler whose queue keeps the jobs

What the texts say is tested without a printer; this shows that they reach a queue, and their places on its paper. The
scheduler lives in a temporary directory; the program runs on an X display of its own and is worked by keystrokes. Exit
status 77 (skipped) where a tool is missing, 1 on a fault and, in CI, on a missing tool.
"""

import os
import re
import shutil
import subprocess
import sys
from collections import namedtuple
from contextlib import contextmanager
from pathlib import Path

from driver import (MAIN, MESSAGE, SETUP, Started, close_message, display, enter, expect, focus, home, need, opened,
                    press, run, wait_for)

TOOLS = "cupsd lpadmin cupsaccept cupsreject lpoptions lpstat Xvfb xdotool pdftotext pdfimages pdffonts".split()

# Access keys of the setup form, then entries of the main form from the pump rate on. Both sizings end in advice.
PAD = ("3upr", "200\t40")
DEPAD = ("3ud2", "200\t1\t42000\t\t\t320\t120\tDiesel")  # its page shows every row
CUSTOMER = "Example Refining\tTank farm 7\tTK-4711\tindoors\tA. Person"
LONG_CUSTOMER = "\t".join(["W" * 60, "Tank farm " * 9, "T" * 60, "I" * 90, "R" * 60])

# The program paints from this table, adding to some of the captions. It has twips; other lengths are in points.
LAYOUT = " ".join((Path(__file__).resolve().parents[2] / "src/report/summary_layout.h").read_text("utf-8").split())
WIDTH, HEIGHT = (int(twips) / 20 for twips in re.findall(r"int summary(?:Width|Height) = (\d+);", LAYOUT))
ROW = r'{"(\w+)", (\d+), (\d+), (\d+), (\d+), Place::(\w+), ("[^"]*"|[^,}]*)(?:, (?:\{\}|Box::(\w+)))?(?:, Type::(\w+))?}'
Row = namedtuple("Row", "name left top width height place text shown_with type")
ROWS = [Row(name, *(int(twips) / 20 for twips in rest[:4]), *rest[4:]) for name, *rest in re.findall(ROW, LAYOUT)]
Text = namedtuple("Text", "left top right bottom words")
NEAR = 0.5

# Every queue takes both papers. The one that each prints on, and how much of its foot stays blank.
PAPERS = {"A4": (595, 842), "Letter": (612, 792)}
QUEUES = {"first": ("A4", 20), "letter": ("Letter", 20), "deep": ("Letter", 50)}
CUPSD_CONF = "Listen {}/socket\nBrowsing No\n<Policy default>\n<Limit All>\nAllow all\n</Limit>\n</Policy>\n"
CUPS_FILES = {"ServerRoot": "", "TempDir": "", "RequestRoot": "/spool", "CacheDir": "/cache", "StateDir": "/state",
              "AccessLog": "/access_log", "ErrorLog": "/error_log", "PageLog": "/page_log"}


def add_queue(name, drivers_paper=None):
    """A queue that keeps its jobs: it accepts, but does not print. No two edges of its paper stay equally blank."""
    paper, foot = QUEUES[name]
    papers = "".join(f"""*PageSize {each}: ""
*ImageableArea {each}: "12 {foot} {width - 18} {height - 6}"
*PaperDimension {each}: "{width} {height}"
""" for each, (width, height) in PAPERS.items())
    default = f"*DefaultPageSize: {drivers_paper or paper}\n"
    Path("printer.ppd").write_text(f'*PPD-Adobe: "4.3"\n*OpenUI *PageSize: PickOne\n{default}{papers}*CloseUI: *PageSize\n')
    run("lpadmin", "-p", name, "-v", "file:/dev/null", "-P", "printer.ppd")
    run("cupsaccept", name)


def jobs():
    """The complete print files received so far, in order."""
    return [file for file in sorted(Path("spool").glob("d*-001")) if file.read_bytes().endswith(b"%%EOF\n")]


@contextmanager
def sized(program, sizing, customer):
    """The program with a valve selected."""
    with opened(program) as started:
        focus(SETUP)
        press(*(f"alt+{key}" for key in sizing[0]), "alt+n")
        enter(customer)
        press("alt+c")
        focus(MAIN)
        enter(sizing[1])
        press("alt+s")
        yield started


def print_in_vain():
    """Presses "Prin&t" where a message must come instead of a job."""
    before = jobs()
    press("alt+t")
    focus(MESSAGE)
    close_message()
    expect(jobs() == before, "printed in spite of the message")


def print_page(queue, directory, every_row=True):
    """Presses "Prin&t" and checks the page that reaches the queue."""
    before, page = len(jobs()), f"{directory}/{queue}.pdf"
    press("alt+t")
    wait_for("the print job", lambda: len(jobs()) > before)
    shutil.copyfile(jobs()[-1], page)
    expect(run("lpstat", "-o", queue), f"not printed into {queue}")
    check_page(page, *QUEUES[queue], every_row)
    print(f"ok: {queue}", flush=True)


def check_page(page, paper, foot, every_row):
    """The rows of the table, and only they, stand in the middle of the paper, or higher where its foot stays blank."""
    listed = [line.split() for line in run("pdfimages", "-list", page).splitlines()[2:]]
    pictures = [" ".join(words[3:6] + words[-4:-2]) for words in listed]  # the last two: dots an inch
    expect(pictures == ["227 84 rgb 96 96", "151 83 rgb 96 96"], f"the pictures are {pictures}")
    expect("Bold" in run("pdffonts", page), "nothing is bold")
    content = run("pdftotext", "-bbox", page, "-")
    pages = re.findall('<page width="(.*)" height="(.*)">', content)
    width, height = PAPERS[paper]
    expect(pages == [(f"{width:f}", f"{height:f}")], f"not one page of {paper}: {pages}")
    x, y = (width - WIDTH) / 2, min((height - HEIGHT) / 2, height - foot - HEIGHT)
    words = re.findall('<word xMin="(.*)" yMin="(.*)" xMax="(.*)" yMax="(.*)">(.*)</word>', content)
    texts = texts_of(Text(*(float(edge) - at for edge, at in zip(edges, (x, y, x, y))), word) for *edges, word in words)
    rows = [row for row in ROWS if row.place != "picture" and (every_row or not row.shown_with)]
    for row, text, before in zip(rows, texts, [None, *texts]):
        check_text(row, text, before.right if before and round(before.top) == round(text.top) else 0)
    more = len(texts) - len(rows)  # the comments may have a second line in their box
    expect(more in (0, 1) and texts[-1].bottom <= rows[-1].top + rows[-1].height, f"{more} more texts: {texts[-1]}")
    expect(texts[-1].words.endswith("(Cv)."), f"the advice ends too soon: {texts[-1]}")


def texts_of(words):
    """The texts of a page in page order. Words a blank apart, a quarter of the type size, belong to one text."""
    texts = []
    for word in sorted(words, key=lambda word: (round(word.top), word.left)):
        gap = word.left - texts[-1].right if texts and round(word.top) == round(texts[-1].top) else WIDTH
        expect(gap >= 0, f"{word} stands on {texts[-1:]}")
        if gap < 0.24 * (word.bottom - word.top):
            word = word._replace(left=texts[-1].left, words=f"{texts.pop().words} {word.words}")
        texts.append(word)
    return texts


def check_text(row, text, taken):
    """A text stands at its row's place and ends in its box; where the text before takes the place, it has moved on."""
    at, place = text.left, row.left if row.left >= taken + 2 else taken + 5
    if row.place.endswith("Right"):
        at, place = text.right, row.left + row.width
    expect(abs(at - place) <= NEAR and abs(text.top - row.top) <= NEAR, f"{text} is not at {row}")
    expect("fitted" in row.place or text.right <= row.left + row.width + NEAR, f"{text} is not cut at {row}")
    type_size = {"heading": 12, "small": 8.25}.get(row.type, 9.75)
    expect(1.09 < (text.bottom - text.top) / type_size < 1.125, f"{text} is not in {type_size} pt")
    expect(not row.name.endswith("lbl") or row.text.strip('":') in text.words, f"{text} is not the caption of {row}")


def check(program, pages):
    with sized(program, PAD, CUSTOMER):
        print_in_vain()  # there is no printer: from now on the button is dead, and the rest of the program works
        add_queue("first")
        press("alt+t", "alt+n")
        focus(SETUP)
        expect(not jobs(), "printed with a button that must be dead")
    add_queue("letter")
    with sized(program, PAD, CUSTOMER):
        print_page("first", pages, every_row=False)  # as there is no default
    run("lpadmin", "-d", "letter")
    with sized(program, DEPAD, CUSTOMER):
        run("cupsreject", "letter")
        print_in_vain()
        run("cupsaccept", "letter")
        print_page("letter", pages)
    add_queue("deep", drivers_paper="A4")
    run("lpadmin", "-d", "deep")
    run("lpoptions", "-p", "deep", "-o", "PageSize=Letter")  # what the user keeps for it
    with sized(program, DEPAD, LONG_CUSTOMER):
        print_page("deep", pages)


@contextmanager
def scheduler():
    """A print scheduler in the current directory, which is the user's home."""
    here = os.getcwd()
    os.environ["CUPS_SERVER"] = f"{here}/socket"
    Path("cupsd.conf").write_text(CUPSD_CONF.format(here))
    Path("cups-files.conf").write_text("".join(f"{name} {here}{file}\n" for name, file in CUPS_FILES.items()))
    with Started(["cupsd", "-f", "-c", f"{here}/cupsd.conf", "-s", f"{here}/cups-files.conf"]):
        wait_for("the scheduler", Path("socket").exists)
        yield


def main(mode, *rest):
    need(*TOOLS)
    start = Path.cwd()
    with home(), scheduler():
        if mode == "--queue":
            add_queue("letter")
            return subprocess.run(rest, cwd=start).returncode
        pages = start / rest[0]
        pages.mkdir(parents=True, exist_ok=True)
        with display():
            check(start / mode, pages)
    return 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
