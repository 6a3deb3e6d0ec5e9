#!/usr/bin/env python3
"""Writes the verification list, duties.csv, and the tables it is sized on beside this script, or into the directory that
is named.

The expected answers are worked out here from the method alone (chapter "How a valve is found" of the user guide), not
from the program's code: the two find each other's faults. Only needed to regenerate the files.
"""

import csv
import math
import struct
import sys
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path

sys.dont_write_bytecode = True  # beside the sources
import duties  # noqa: E402

DIRECTORY = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent)

BODIES = {"Pad": {0.2: "1/2", 0.4: "1/2", 1: "1", 2: "1", 4: "1", 7.5: "2", 10: "2", 20: "2", 45: "3", 60: "3"},
          "Depad": {3: "1", 6: "1", 12: "1", 17: "2", 20: "2", 35: "2", 70: "3", 90: "3", 115: "3", 140: "4", 150: "4",
                    200: "4", 280: "6"}}

# Pressure and what a valve of Cv 1 passes there: round figures near those of a real valve, for a calculator. The rows
# stand far apart, so that one step of the Cv is sometimes not enough.
VALVES = {
    "psi_Pad": [(1, 230), (10, 770), (25, 1360), (50, 2200), (100, 3900), (200, 7400)],
    "kgcm2_Pad": [(0.07, 6.2), (0.5, 17), (1.8, 37), (5, 80), (14.06, 200)],
    "kpa_Pad": [(6.9, 6.2), (50, 17), (172, 36), (500, 80), (1379, 200)],
    "psi_Depad": [(0.07, 61), (0.5, 160), (1, 230), (2, 330), (2.8, 390)],
    "inwc_Depad": [(2, 62), (10, 140), (20, 195), (50, 310), (77, 390)],
    "mbar_Depad": [(5, 1.7), (25, 3.7), (50, 5.2), (100, 7.4), (193, 10.4)],
}
# Tank volume; pad, depad with a high point, depad with a low one. A row lies off the formula of the smaller tanks, so
# that the change from one to the other shows.
TANKS = {
    "USLargeTank": [(800000, 21000, 12600, 20500), (2000000, 39000, 23500, 38000), (7560000, 90000, 54000, 88000)],
    "MetriclargeTank": [(3000, 550, 330, 540), (8000, 1080, 650, 1060), (30000, 2500, 1500, 2450)],
}


def single(value):
    """`value` in 24 binary digits."""
    return struct.unpack("f", struct.pack("f", value))[0]


def whole(value):
    return round(value)  # halves to the even neighbour


def text(value):
    return f"{value:.15g}"


def cut(value, places):
    return math.floor(value * 10**places) / 10**places


def shown_flow(flow, cut_to_two):
    return text(cut(flow, 2) if cut_to_two else cut(flow, 1) if flow <= 10 else whole(flow))


def on_line(x1, x, x2, y1, y2):
    return y2 - (x2 - x) / (x2 - x1) * (y2 - y1)


# Factors are held in 24 binary digits; 8 and the limits are not.
FACTORS = {"US": {"displaced": 8.0, "high": single(8.6), "low": single(17.1)},
           "Metric": {"displaced": single(1.01), "high": single(1.01), "low": single(2.02)}}
BREATHING = {"US": {"high": single(0.0143), "other": single(1 / 42), "limit": 840000, "largest": 7560000},
             "Metric": {"high": single(0.1), "other": single(0.169), "limit": 3179, "largest": 30000}}
POINTS = {"US": {"Flash Point": 100, "Boiling Point": 300}, "Metric": {"Flash Point": 38, "Boiling Point": 149}}
GASES = {"Nitrogen": 0.97, "Air": 1.0, "Dry CO2": 1.52, "Natural Gas": 0.6}
RANGES = {"Series 61": {"PSI": ("1", "200"), "kg/cm2": ("0.07", "14.06"), "kPa": ("6.9", "1379")},
          "Series 63": {"PSI": ("25", "200"), "kg/cm2": ("1.76", "14.06"), "kPa": ("172", "1379")},
          "Depad": {"PSI": ("0.07", "2.8"), "mbar": ("5", "193"), "in wc": ("2", "77")}}
LEAST = {"PSI": (25, "25 psi"), "kg/cm2": (1.8, "1.8 kg/cm2"), "kPa": (172, "172 kPa")}

LESS_PRESSURE = "Consider reducing supply pressure to increase valve utilization for better control."
LESS_VALVE = ("Consider reducing valve size or decreasing differential pressure to increase valve utilization for better "
              "control.")
NEXT_VALVE = "If utilized valve capacity is greater than {}%, consider using the next larger valve capacity (Cv)."


class Refused(Exception):
    """Ends a sizing with a comment."""


class Failed(Exception):
    """Ends a sizing with a message box."""


class Sizing:
    """One duty, entered as texts, and what the screen shows of it."""

    def __init__(self, duty):
        self.duty = duty
        self.type = duty["Valve Type"]
        self.isPad = self.type == "Pad"
        self.breathes = duty["Sizing Method"] == "API-2000"
        self.units = duty["Units of Measure"]
        self.unit = duty["Units of Pressure"]
        table = self.unit.replace("/", "").replace(" ", "").lower() + "_" + self.type
        self.rows = [(pressure, flow * cv, f'{body}"', cv) for pressure, flow in VALVES[table]
                     for cv, body in BODIES[self.type].items()]
        self.shown = {"Flow Units": "SCFH" if self.units == "US" else "Nm3/Hr"}

    def size(self):
        try:
            self.check_entries()
            self.find_flows()
            self.check_pressure()
            self.select()
            self.step_up()
            self.judge()
            self.shown["Status"] = "sized"
        except Refused as refusal:
            self.shown["Status"] = "refused"
            self.shown["Comments"] = str(refusal)
        except Failed as failure:
            self.shown["Status"] = "failed"
            self.shown["Messages"] = str(failure)
        return self.shown

    def check_entries(self):
        duty, supply = self.duty, "Supply" if self.isPad else "Differential"
        if duty["Specific Gravity"] and float(duty["Specific Gravity"]) <= 0:
            self.shown = {}  # a row of a list is refused before it is entered on the screens
            raise Refused(f'Specific Gravity "{duty["Specific Gravity"]}": it must be greater than 0')
        if not duty["Pressure"] or not duty["Pump Rate"]:
            raise Refused("Please enter Pressure and Pump-Rate information.")
        self.pump, self.pressure = float(duty["Pump Rate"]), float(duty["Pressure"])
        gravity = duty["Specific Gravity"] or GASES[duty["Gas"] or ("Nitrogen" if self.isPad else "Air")]
        self.gravity = float(gravity)
        if self.breathes and not duty["Tank Volume"]:
            raise Refused("Please enter the Tank Volume.")
        self.volume = float(duty["Tank Volume"] or 0)
        if self.pump > 100000:
            raise Refused("Pump-Rate will exceed the maximum available valve capacity.")
        if self.pressure <= 0:
            raise Refused(f"{supply} Pressure must be greater than zero.")
        if self.pump <= 0:
            raise Refused(f"Pump-{'out' if self.isPad else 'in'} rate must be greater than zero.")
        if not self.breathes:
            return
        if not self.isPad and not duty["Flash Point"] and not duty["Boiling Point"]:
            raise Refused("Please enter the Flash Point and/or Boiling Point of the Stored Material.")
        if self.volume > BREATHING[self.units]["largest"]:
            raise Refused("There are special requirements for tanks larger than " +
                          ("7,560,000 gallons. Refer to API Publication 2000." if self.units == "US"
                           else "30,000 cubic meters."))
        if self.volume <= 0:
            raise Refused("Tank Volume must be greater than zero.")

    def find_flows(self):
        kind, column, breathing = "displaced", 1, BREATHING[self.units]["other"]
        if self.breathes and not self.isPad:
            point = "Flash Point" if self.duty["Flash Point"] else "Boiling Point"
            isHigh = float(self.duty[point]) >= POINTS[self.units][point]
            kind, column = ("high", 2) if isHigh else ("low", 3)
            breathing = BREATHING[self.units]["high"] if isHigh else breathing
        pumpFlow = self.pump * FACTORS[self.units][kind]
        breathingFlow = 0.0
        if self.breathes and self.volume <= BREATHING[self.units]["limit"]:
            breathingFlow = self.volume * breathing
        elif self.breathes:
            rows = TANKS["USLargeTank" if self.units == "US" else "MetriclargeTank"]
            upper = next(number for number, row in enumerate(rows) if row[0] >= self.volume)
            one, two = rows[upper - 1], rows[upper]
            breathingFlow = on_line(one[0], self.volume, two[0], one[column], two[column])
        self.total = pumpFlow + breathingFlow
        quotient = Decimal(text((0.985 if self.isPad else 1.0) / math.sqrt(self.gravity)))
        self.gas = single(float(quotient.quantize(Decimal("0.01"), ROUND_HALF_UP)))
        self.shown["Pump-Rate Flow"] = shown_flow(pumpFlow, pumpFlow <= 1)
        self.shown["Breathing Flow"] = shown_flow(breathingFlow, breathingFlow < 1)
        self.shown["Total Flow"] = shown_flow(self.total, self.total < 1)

    def check_pressure(self):
        lowest, highest = RANGES[self.duty["Valve Model"] if self.isPad else "Depad"][self.unit]
        if not float(lowest) <= self.pressure <= float(highest):
            raise Refused(f"{'Supply' if self.isPad else 'Differential'} Pressure must be between {lowest} and {highest} "
                          f"{self.unit}.")
        self.needed = whole(float(self.shown["Total Flow"]))

    def table_flow(self, flow):
        if self.gas == 0:
            self.shown = {"Flow Units": self.shown["Flow Units"]}
            raise Failed("Error Code 11; modGetValveData")
        return whole(flow / self.gas)

    def first_row(self, flow, rows):
        return next((row for row in sorted(rows) if row[0] >= self.pressure and row[1] > flow), None)

    def capacity(self):
        """What the Cv passes at the duty's pressure, of the gas of the tables."""
        rows = sorted(row for row in self.rows if row[3] == self.cv)
        row = self.first_row(self.table_flow(self.needed), rows)
        if row is None:
            return 0.0
        if row[0] == self.pressure:
            return row[1]
        before = rows[rows.index(row) - 1]
        return on_line(before[0], self.pressure, row[0], before[1], row[1])

    def least_pressure_rule(self):
        """Why the Cv does not work at the pressure of a pad valve; None when it does."""
        least, named = LEAST[self.unit]
        if self.pressure >= least or (self.duty["Valve Model"] == "Series 61" and self.cv <= 0.4):
            return None
        which = "valves larger than 1/2 inch" if self.duty["Valve Model"] == "Series 61" else "valves"
        return f"{self.duty['Valve Model']} {which} must have a minimum supply pressure of {named}."

    def show_valve(self, body):
        self.shown["Valve Coefficient"] = text(cut(single(self.cv), 1))
        self.shown["Valve Body Size"] = body
        self.shown["Max Valve Capacity"] = text(self.most)

    def forget_valve(self):
        for caption in "Valve Coefficient", "Valve Body Size", "Max Valve Capacity":
            self.shown[caption] = ""

    def select(self):
        row = self.first_row(self.table_flow(self.needed), self.rows)
        if row is None:
            self.shown["Valve Coefficient"] = "" if self.isPad else "0"
            raise Refused("You have exceeded the maximum available valve capacity for the given "
                          f"{'supply' if self.isPad else 'differential'} pressure.")
        self.cv = row[3]
        if self.isPad and self.least_pressure_rule():
            raise Refused(self.least_pressure_rule())
        if self.isPad:
            self.most = single(whole(self.capacity()) * self.gas)
        else:
            self.most = single(whole(self.capacity() * self.gas))
        self.show_valve(row[2])

    def step_up(self):
        if single(self.total) < self.most:
            return
        series = list(BODIES[self.type])
        if self.cv == series[-1]:
            return
        before = self.shown["Valve Coefficient"]
        self.cv = series[series.index(self.cv) + 1]
        if self.isPad and self.least_pressure_rule():
            return
        self.most = single(whole(self.capacity() * self.gas))
        row = self.first_row(self.table_flow(self.most), self.rows)
        self.show_valve(row[2] if row else "")
        if self.most == 0:
            self.shown["Valve Coefficient"] = before
            raise Failed("Error Code 11: modSizeValve")

    def judge(self):
        share = single(self.total / self.most)
        if share >= 1:
            self.forget_valve()
            raise Refused("You have reached or exceeded the maximum valve capacity for the given Inlet Pressure.")
        low, high, advice = (0.2, 0.7, LESS_PRESSURE) if self.isPad else (0.5, 0.8, LESS_VALVE)
        quiet = 1 if self.duty["Valve Model"] == "Series 61" else 25
        comment = ""
        if share < single(low) and self.pressure > quiet:
            comment = advice
        if share > single(high):
            comment = NEXT_VALVE.format(round(100 * high))
        self.shown["Comments"] = comment
        percent = whole(single(share * 100))
        self.shown["Capacity Utilized (%)"] = "Less than 1%" if share < single(0.01) else text(percent)


ENTRIES = ["Tag Number", "Valve Model", "Valve Type", "Sizing Method", "Units of Measure", "Units of Pressure", "Pump Rate",
           "Pressure", "Tank Volume", "Gas", "Specific Gravity", "Boiling Point", "Flash Point"]
ANSWERS = ["Status", "Pump-Rate Flow", "Breathing Flow", "Total Flow", "Flow Units", "Valve Coefficient", "Valve Body Size",
           "Max Valve Capacity", "Capacity Utilized (%)", "Comments", "Messages"]


def write(name, header, rows):
    with open(DIRECTORY / f"{name}.csv", "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(header)
        writer.writerows(rows)


for name, rows in VALVES.items():
    bodies = BODIES[name.split("_")[1]]
    write(name, ["Pressure", *(f'Cv {cv} {body}"' for cv, body in bodies.items())],
          [(pressure, *(text(flow * cv) for cv in bodies)) for pressure, flow in rows])
for name, rows in TANKS.items():
    write(name, ["TankVol", "Pad", "DepadHFP", "DepadLFP"], rows)
listed = [dict.fromkeys(ENTRIES, "") | duty for duty in duties.all_duties(RANGES, BODIES)]
answered = [[*duty.values(), *(Sizing(duty).size().get(answer, "") for answer in ANSWERS)] for duty in listed]
# The program expects this last row: without it, the file was cut.
end = [f"end of {len(listed)} duties", *[""] * (len(answered[0]) - 1)]
write("duties", ENTRIES + ANSWERS, [*answered, end])
