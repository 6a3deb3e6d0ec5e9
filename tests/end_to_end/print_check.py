#!/usr/bin/env python3
"""Prints sizing summaries from the real program into a CUPS scheduler of its own and reads the jobs.

usage: print_check.py PROGRAM [DIRECTORY FOR THE PRINTED PAGES [TITLE OF THE ONE CASE TO PRINT]]
       print_check.py --queue COMMAND...    runs a command beside a scheduler whose queue keeps the jobs

The scheduler, its spool and its socket live in a temporary directory; the program runs on an X display of its own and
is worked by keystrokes. Exit status 77 (skipped) where a tool is missing, 1 on a fault and, in CI, on a missing tool.
"""

import contextlib
import datetime
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as xml

TOOLS = ["cupsd", "lpadmin", "cupsaccept", "cupsreject", "lpstat", "Xvfb", "xdotool", "localedef", "pdfinfo", "pdftotext",
         "pdfimages", "pdffonts"]
SKIPPED = 77
PATIENCE = 30  # seconds for any one thing to happen
WIDTH, HEIGHT = 10545, 14670  # the summary in twips
NEAR = 0.5  # points
PAPERS = {"A4": (595, 842), "Letter": (612, 792)}  # points

SETUP = "^Halvor-ORM  Blanketing Valve Sizing Application"
MAIN = "^Halvor-ORM Blanketing Valve Sizing Application"
MESSAGE = "^Halvor-ORM Blanketing Valve Sizing$"

PPD = """*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "CHECK.PPD"
*Manufacturer: "Check"
*Product: "(Check)"
*ModelName: "Check"
*ShortNickName: "Check"
*NickName: "Check"
*PSVersion: "(3010.000) 0"
*OpenUI *PageSize: PickOne
*DefaultPageSize: {paper}
*PageSize {paper}: "<</PageSize[{width} {height}]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*DefaultPageRegion: {paper}
*PageRegion {paper}: "<</PageSize[{width} {height}]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: {paper}
*ImageableArea {paper}: "{left} {bottom} {right} {top}"
*DefaultPaperDimension: {paper}
*PaperDimension {paper}: "{width} {height}"
"""

CUPSD_CONF = """Listen {directory}/socket
Browsing No
PreserveJobFiles Yes
DefaultAuthType None
<Location />
  Allow all
</Location>
<Policy default>
  <Limit All>
    Allow all
  </Limit>
</Policy>
"""

CUPS_FILES_CONF = """ServerRoot {directory}
RequestRoot {directory}/spool
TempDir {directory}/spool/tmp
CacheDir {directory}/cache
StateDir {directory}/state
AccessLog {directory}/access_log
ErrorLog {directory}/error_log
PageLog {directory}/page_log
FileDevice Yes
"""

# What stands on every page: (left or, for "R", right edge in twips, top, text).
COMMON = [(7800, 0, "P.O. Box 1234"), (7800, 240, "1 Example Street"), (7800, 480, "Exampletown, EX 12345 Country"),
          (7800, 720, "Telephone: 000-000-0000"), (7800, 960, "Fax: 000-000-0000"),
          (7800, 1200, "www.halvor-orm.example"), (7800, 1440, "sales@halvor-orm.example"),
          (3840, 1680, "Halvor-ORM Tank Blanketing Version 1.1"), (5280, 1920, "Sizing Summary"),
          (5280, 2280, "Copyright Halvor-ORM"), ("R5775", 2520, "Report Date:"), ("R5775", 2880, "Customer Name:"),
          ("R5775", 3120, "Location:"), ("R5775", 3360, "ORM Representative:"), ("R5655", 3600, "Tag Number:"),
          ("R5685", 3840, "Valve Type:"), ("R5685", 4080, "Sizing Method:"), ("R5655", 4320, "Valve:"),
          ("R5655", 4560, "Notes:"), ("R5685", 5160, "Blanketing Gas:"), ("R5685", 6120, "Pump Rate:"),
          ("R5610", 6960, "Valve Body Size:"), ("R5610", 7200, "Valve Coefficient (Cv):"),
          ("R5610", 7440, "Total Flow Rate:"), ("R5610", 7680, "Max Valve Capacity:"),
          ("R5610", 7920, "Valve Capacity Utilized:"), (6720, 7920, "%"), (2280, 8280, "Comments")]
CUSTOMER = ["Example Refining", "Tank farm 7", "TK-4711", "indoors", "A. Person"]
ANY = None  # a text that the capacity tables decide
BETTER = "to increase valve utilization for better control."
NEXT_CV = "consider using the next larger valve capacity (Cv)."
ADVICE = ["", f"Consider reducing supply pressure {BETTER}",
          f"Consider reducing valve size or decreasing differential pressure {BETTER}",
          f"If utilized valve capacity is greater than 70%, {NEXT_CV}",
          f"If utilized valve capacity is greater than 80%, {NEXT_CV}"]
CUT = "cut"  # a place whose text is longer than its box
CUSTOMER_EDGE = 6000 + 2640  # where a customer name and notes are cut, in twips
PUSHED = ""  # a place that the length of the value before it decides


class Fault(Exception):
    pass


def run(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, timeout=PATIENCE, **options).stdout


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while not (result := condition()):
        if time.monotonic() > end:
            raise Fault(f"waited in vain for {what}")
        time.sleep(0.005)
    return result


@contextlib.contextmanager
def started(command, **options):
    """A process that is ended with the block, however that ends."""
    process = subprocess.Popen(command, **options)
    try:
        yield process
    finally:
        process.terminate()
        try:
            process.wait(timeout=5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


class Scheduler:
    """A scheduler whose queues keep their jobs: they accept, but do not print."""

    def __init__(self, directory):
        self.directory = directory
        self.environment = dict(os.environ, CUPS_SERVER=f"{directory}/socket", LC_ALL="C.UTF-8")

    @contextlib.contextmanager
    def running(self):
        for part in ("spool/tmp", "cache", "state/certs", "ppd", "ssl"):
            (self.directory / part).mkdir(parents=True)
        for name, text in (("cupsd.conf", CUPSD_CONF), ("cups-files.conf", CUPS_FILES_CONF)):
            (self.directory / name).write_text(text.format(directory=self.directory))
        with started(["cupsd", "-f", "-c", self.directory / "cupsd.conf", "-s", self.directory / "cups-files.conf"]):
            wait_for("the scheduler", lambda: "is running" in self.call("lpstat", "-r", check=False))
            yield self

    def call(self, *command, check=True):
        done = subprocess.run(command, env=self.environment, text=True, timeout=PATIENCE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE)
        if check and done.returncode != 0:
            raise Fault(f"{' '.join(map(str, command))}: {done.stderr}")
        return done.stdout

    def add_queue(self, name, paper, foot=20):
        """A queue with its printer's paper, which cannot be printed on at the edges: not the same at each of them."""
        width, height = PAPERS[paper]
        ppd = self.directory / f"{name}.ppd"
        ppd.write_text(PPD.format(paper=paper, width=width, height=height, left=12, bottom=foot, right=width - 18,
                                  top=height - 6))
        self.call("lpadmin", "-p", name, "-v", "file:/dev/null", "-P", ppd)
        self.call("cupsaccept", name)

    def jobs(self):
        """The complete print files received so far, in order."""
        files = sorted((self.directory / "spool").glob("d*-001"))
        return [file for file in files if file.read_bytes().rstrip().endswith(b"%%EOF")]

    def queues_used(self):
        return [line.split()[0].rsplit("-", 1)[0] for line in self.call("lpstat", "-W", "all", "-o").splitlines()]


class Window:
    """The program on its own display, worked by keystrokes."""

    def __init__(self, program, scheduler, display, directory, locale):
        self.program = program
        home = directory / "home"
        home.mkdir(mode=0o700, exist_ok=True)
        drop = {name for name in os.environ if name.startswith(("LC_", "QT_", "WAYLAND_", "DBUS_", "PRINTER", "LPDEST"))}
        self.environment = {name: value for name, value in scheduler.environment.items() if name not in drop}
        self.environment.update(DISPLAY=display, HOME=str(home), XDG_RUNTIME_DIR=str(home), QT_QPA_PLATFORM="xcb",
                                LANG=locale, LC_ALL=locale, LANGUAGE="")
        if locale != "C.UTF-8":
            self.environment["LOCPATH"] = str(directory / "locales")

    @contextlib.contextmanager
    def open(self):
        with started([self.program], env=self.environment) as process:
            self.process = process
            self.focus(SETUP)
            yield self

    def tool(self, *arguments):
        return run("xdotool", *arguments, env=self.environment)

    def found(self, title):
        done = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title], env=self.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=PATIENCE)
        return done.stdout.split()

    def focus(self, title):
        def ready():
            if self.process.poll() is not None:
                raise Fault(f"the program ended with status {self.process.returncode}")
            return self.found(title)
        window = wait_for(f"the window {title}", ready)[0]
        self.tool("windowfocus", "--sync", window)

    def keys(self, *keys):
        self.tool("key", "--delay", "2", *keys)

    def fill(self, texts):
        """Types each text into the box with the focus and goes on to the next box; None leaves a box as it is."""
        for text in texts:
            if text:
                self.tool("type", "--delay", "2", text)
            self.keys("Tab")

    def size(self, setup, entries, customer=None):
        self.keys(*(f"alt+{key}" for key in setup))
        if customer:
            self.keys("alt+n")
            self.fill(customer)
        self.keys("alt+c")
        self.focus(MAIN)
        self.fill(entries)
        self.keys("alt+s")

    def print(self, scheduler):
        """Presses "Prin&t" and returns the page that reaches the queue and the time it takes."""
        before = len(scheduler.jobs())
        start = time.monotonic()
        self.keys("alt+t")
        wait_for("the print job", lambda: len(scheduler.jobs()) > before)
        return scheduler.jobs()[-1], time.monotonic() - start

    def dismiss_message(self):
        self.focus(MESSAGE)
        self.keys("Return")
        wait_for("the end of the message", lambda: not self.found(MESSAGE))
        self.focus(MAIN)


def page_words(page):
    """The paper's size and the words of the page as (left, top, right, text, height), all in points."""
    text = run("pdftotext", "-bbox", str(page), "-")
    root = xml.fromstring(re.sub(r'xmlns="[^"]*"', "", text))
    pages = root.findall(".//page")
    if len(pages) != 1:
        raise Fault(f"{len(pages)} pages")
    words = []
    for word in root.iter("word"):
        left, top, right, bottom = (float(word.get(edge)) for edge in ("xMin", "yMin", "xMax", "yMax"))
        words.append((left, top, right, word.text, bottom - top))
    return float(pages[0].get("width")), float(pages[0].get("height")), words


def check_types(words, top):
    """The headings stand in 12 pt, the copyright line in 8.25 pt, all else in 9.75 pt."""
    sizes = {1680: 12, 1920: 12, 2280: 8.25}
    for word in words:
        row = next((row for row in sizes if abs(word[1] - top - row / 20) <= NEAR), None)
        if not 1.05 < word[4] / sizes.get(row, 9.75) < 1.16:  # the typeface's own height
            raise Fault(f"{word} is not in {sizes.get(row, 9.75)} pt")


def check_page(page, labels, paper, foot, advised):
    """The page has each label at its place, advice in its box or none, two pictures, and not a word more."""
    paper_width, paper_height, words = page_words(page)
    if (paper_width, paper_height) != PAPERS[paper]:
        raise Fault(f"the page is {paper_width} by {paper_height} points, not {paper}")
    left = (paper_width - WIDTH / 20) / 2
    top = min((paper_height - HEIGHT / 20) / 2, paper_height - foot - HEIGHT / 20)
    check_types(words, top)
    for place, label_top, text in labels:
        line = sorted(word for word in words if abs(word[1] - top - label_top / 20) <= NEAR)
        count = 1 if text is ANY else len(text.split())

        def stands_at(start):
            found = line[start:start + count]
            if any(after[0] < before[2] for before, after in zip(line, line[1:])):
                raise Fault(f"words over one another: {line}")
            if place == CUT:
                return text.startswith(found[0][3]) and len(found[0][3]) > 9 and found[0][2] <= left + CUSTOMER_EDGE / 20
            if text is not ANY and [word[3] for word in found] != text.split():
                return False
            if place == PUSHED:
                return True
            if isinstance(place, str):
                return abs(found[-1][2] - left - int(place[1:]) / 20) <= NEAR
            return abs(found[0][0] - left - place / 20) <= NEAR
        start = next((start for start in range(len(line) - count + 1) if stands_at(start)), None)
        if start is None:
            raise Fault(f'"{text}" is not at {place}, {label_top} twips: {line}')
        words = [word for word in words if word not in line[start:start + count]]
    box = (left + 3360 / 20, top + 8280 / 20, left + 7815 / 20, top + 8895 / 20)
    advice = [word for word in words if box[0] - NEAR <= word[0] and word[2] <= box[2] + NEAR
              and box[1] - NEAR <= word[1] <= box[3]]
    if " ".join(word[3] for word in advice) not in advised:
        raise Fault(f"the comments are {advice}")
    if rest := [word for word in words if word not in advice]:
        raise Fault(f"unexpected on the page: {rest}")
    pictures = [line.split()[3:6] for line in run("pdfimages", "-list", str(page)).splitlines()[2:]]
    if pictures != [["227", "84", "rgb"], ["151", "83", "rgb"]]:  # from the left
        raise Fault(f"the pictures are {pictures}")
    if "Bold" not in run("pdffonts", str(page)):
        raise Fault("nothing is bold")


class Case:
    """A duty, and what its page must show beyond COMMON. The flows are worked out by hand from the entries."""

    def __init__(self, name, metric, entries, total, note=None, setup="3", comma=False, advised=ADVICE):
        self.metric, self.note, self.comma, self.advised = metric, note, comma, advised
        self.valve_type, self.method = name.split(" ", 1)
        self.pad, self.api = self.valve_type == "Pad", self.method == "API-2000"
        self.setup = setup + ("m" if metric else "u") + ("p" if self.pad else "d") + ("2" if self.api else "r")
        self.entries, self.total = entries, total
        self.gravity = "0.97" if self.pad else "1"
        self.title = f"{name} {'metric' if metric else 'US'}{' comma' if comma else ''}{' ' + note if note else ''}"
        if comma:
            self.gravity = self.gravity.replace(".", ",")

    def labels(self, date, customer):
        pump, pressure, *more = self.entries
        gas = "Blanketing" if self.pad else "Vented"
        flow_units = "Nm3/Hr" if self.metric else "SCFH"
        degrees = "deg.C" if self.metric else "deg.F"
        pressure_units = ("kg/cm2" if self.pad else "mbar") if self.metric else "PSI"
        standard = self.gravity if self.pad else "1,00" if self.comma else "1.00"
        fits = len(self.total) <= 5  # before the unit, 600 twips to the right
        after = [6720, 7560, 8520] if fits else [PUSHED] * 3
        yield from COMMON
        yield from ((CUT if len(text) > 30 else 6000, top, text)
                    for top, text in zip((2880, 3120, 3600, 4560, 3360), customer))
        yield (6000, 2520, date)
        yield from [(6000, 3840, self.valve_type), (6000, 4080, self.method), (6000, 4320, f"Series 6{self.setup[0]}"),
                    ("R5685", 4920, f"Specific Gravity of {gas} Gas:"), (6120, 4920, self.gravity),
                    (6120, 5160, "Nitrogen" if self.pad else "Air"),
                    (6120, 6120, pump), (6960, 6120, "m3/Hr" if self.metric else "gpm"),
                    ("R5685", 6360, "Supply Pressure" if self.pad else "Differential Pressure"), (6120, 6360, pressure),
                    (6960, 6360, pressure_units), (6120, 6960, ANY), (6120, 7200, ANY),
                    (6120, 7440, self.total), (after[0], 7440, flow_units), (after[1], 7440, standard),
                    (after[2], 7440, "S.G. Gas"), (6120, 7680, ANY), (PUSHED, 7680, flow_units),
                    (PUSHED, 7680, standard), (PUSHED, 7680, "S.G. Gas"), (6120, 7920, ANY)]
        if self.api:
            yield from [("R5685", 6600, "Tank Volume:"), (6120, 6600, more[0]),
                        (6960, 6600, "Cubic Meters" if self.metric else "Gallons")]
        if self.note:
            boiling, flash, material = more[3:]
            yield from [(7320, 4080, "-"), (7440, 4080, f"{self.note} Flash/Boiling Point"),
                        ("R5685", 5400, "Material to be stored:"), (6120, 5400, material),
                        ("R5685", 5640, "Boiling Point of Stored Material:"), (6960, 5640, degrees),
                        ("R5685", 5880, "Flash Point of Stored Material:"), (6960, 5880, degrees)]
            yield from ((6120, top, text) for top, text in ((5640, boiling), (5880, flash)) if text)


# Entries in tab order: pump rate, pressure, tank volume, gas, gravity, boiling point, flash point, material.
CASES = [
    Case("Pad Direct Displacement", False, ["100", "40"], "800"),
    Case("Depad Direct Displacement", False, ["100", "1"], "800"),
    Case("Pad API-2000", False, ["100", "40", "42000"], "1800.00001862645", setup="1"),
    Case("Depad API-2000", False, ["100", "1", "42000", None, None, "", "100", "Diesel"], "1460.60003489256", "High"),
    Case("Pad Direct Displacement", True, ["20", "3"], "20.1999998092651"),
    # Far below the capacity of the smallest valve: the longest advice, in two lines.
    Case("Depad Direct Displacement", True, ["5", "30"], "5.04999995231628", advised=ADVICE[2:3]),
    Case("Pad API-2000", True, ["20", "3", "150"], "45.5499997735023"),
    Case("Depad API-2000", True, ["20", "20", "150", None, None, "", "37.9", "Petrol"], "65.7499995827675", "Low"),
]
COMMA_CASES = [
    Case("Depad API-2000", True, ["20", "20", "150", None, None, "", "37,9", "Petrol"], "65,7499995827675", "Low",
         comma=True),
]


class Check:
    """The prints one after another, in a temporary directory and on a display of its own."""

    def __init__(self, program, directory, display, pages):
        self.program, self.directory, self.display, self.pages = program, directory, display, pages
        self.times = []

    def window(self, scheduler, locale="C.UTF-8"):
        return Window(self.program, scheduler, self.display, self.directory, locale).open()

    def print_case(self, scheduler, case, paper, locale="C.UTF-8", date="%-d %b %Y", foot=0, customer=CUSTOMER):
        with self.window(scheduler, locale) as window:
            window.size(case.setup, case.entries, customer)
            page, seconds = window.print(scheduler)
        if self.pages:
            shutil.copyfile(page, self.pages / f"{case.title.replace(' ', '-')}.pdf")
        check_page(page, case.labels(datetime.date.today().strftime(date), customer), paper, foot, case.advised)
        self.times.append(seconds)
        print(f"ok: {case.title}, in the queue after {seconds * 1000:.0f} ms", flush=True)

    def no_printer(self, scheduler):
        """One message; the button is dead from then on, whatever is installed meanwhile; the rest still works."""
        with self.window(scheduler) as window:
            window.size("3ur", ["100", "40"])
            window.keys("alt+t")
            window.dismiss_message()
            scheduler.add_queue("late", "A4")
            window.keys("alt+t", "alt+n")
            window.focus(SETUP)
            if scheduler.call("lpstat", "-W", "all", "-o"):
                raise Fault("printed with a button that should be disabled")
        print("ok: no printer installed", flush=True)

    def refused(self, scheduler):
        """A queue that takes no jobs ends in a message, and the next print goes through."""
        with self.window(scheduler) as window:
            window.size("3ur", ["100", "40"])
            before = len(scheduler.jobs())
            scheduler.call("cupsreject", "letter")
            window.keys("alt+t")
            window.dismiss_message()
            if len(scheduler.jobs()) != before:
                raise Fault("the queue took the job that it should refuse")
            scheduler.call("cupsaccept", "letter")
            window.print(scheduler)
        print("ok: a queue that refuses the job", flush=True)

    def one(self, title):
        with Scheduler(self.directory / "one").running() as scheduler:
            scheduler.add_queue("letter", "Letter")
            self.print_case(scheduler, next(case for case in CASES if case.title == title), "Letter")

    def all(self):
        locales = self.directory / "locales"
        locales.mkdir()
        run("localedef", "-i", "de_DE", "-f", "UTF-8", str(locales / "de_DE.UTF-8"))
        with Scheduler(self.directory / "none").running() as scheduler:
            self.no_printer(scheduler)
        with Scheduler(self.directory / "two").running() as scheduler:
            scheduler.add_queue("first", "A4")
            scheduler.add_queue("letter", "Letter")
            for case in CASES[:4]:
                self.print_case(scheduler, case, "A4")
            if set(scheduler.queues_used()) != {"first"}:
                raise Fault(f"without a default printer the first is not used: {scheduler.queues_used()}")
            scheduler.call("lpadmin", "-d", "letter")
            for case in CASES[4:]:
                self.print_case(scheduler, case, "Letter")
            for case in COMMA_CASES:
                self.print_case(scheduler, case, "Letter", "de_DE.UTF-8", "%d.%m.%y")
            self.refused(scheduler)
            scheduler.add_queue("deep", "Letter", foot=50)
            scheduler.call("lpadmin", "-d", "deep")
            self.print_case(scheduler, CASES[0], "Letter", foot=50, customer=["W" * 60, *CUSTOMER[1:3], "I" * 90, "R"])
        if min(self.times) > 0.5:
            raise Fault("no print took less than half a second")


@contextlib.contextmanager
def display():
    """The name of an X display of its own. Its number is far from those that other servers start and end with: one that
    ends can take the socket of the next server of that number with it."""
    name = f":{1000 + os.getpid() % 50000}"
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    with started(["Xvfb", name, "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"], **quiet):
        ask = ["xdotool", "getdisplaygeometry"]
        wait_for("the display", lambda: subprocess.run(ask, env=dict(os.environ, DISPLAY=name), **quiet).returncode == 0)
        yield name


def stop(*_):
    raise Fault("stopped")


def beside_queue(directory, command):
    with Scheduler(directory / "queue").running() as scheduler:
        scheduler.add_queue("letter", "Letter")
        return subprocess.run(command, env=scheduler.environment).returncode


def main(program, pages=None, *more):
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    if missing := [tool for tool in TOOLS if not shutil.which(tool)]:
        print(f"skipped: this check needs {', '.join(missing)}")
        return 1 if os.environ.get("CI") else SKIPPED
    if pages and program != "--queue":
        pathlib.Path(pages).mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGTERM, stop)
    with tempfile.TemporaryDirectory(prefix="print-check-") as directory:
        try:
            if program == "--queue":
                return beside_queue(pathlib.Path(directory), [pages, *more])
            with display() as name:
                check = Check(os.path.abspath(program), pathlib.Path(directory), name, pages and pathlib.Path(pages))
                check.one(*more) if more else check.all()
        except (Fault, subprocess.SubprocessError) as fault:
            print(f"FAULT: {fault}")
            for log in pathlib.Path(directory).glob("*/error_log"):
                print(f"{log}:", *log.read_text().splitlines()[-5:], sep="\n  ")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
