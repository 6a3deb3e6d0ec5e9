#!/usr/bin/env python3
"""Writes the nominal capacity tables and the large-tank venting tables as CSV files beside this script, or into the
directory that is named.

The figures, their origin and their rounding are described in README.md. Only needed to regenerate the files.
"""

import csv
import math
import sys
from decimal import Decimal
from pathlib import Path

DIRECTORY = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent)

# Compressible flow through a valve, ANSI/ISA-75.01.01 (IEC 60534-2-1), US units.
N7 = 1360  # SCFH per Cv with psia and degR; standard cubic feet at 60 degF and 14.696 psia
XT = 0.72  # critical pressure drop ratio; the ratio of specific heats is 1.4 for air and nitrogen alike, so Fk = 1
INLET_TEMPERATURE = 519.67  # degR, 60 degF
ATMOSPHERE = 14.696  # psia
NITROGEN, AIR = 0.97, 1.0  # specific gravities, air = 1

NM3H_PER_SCFH = 0.026793  # from 60 degF and 14.696 psia to 0 degC and 101.325 kPa

# Pascal per unit.
PSI = 4.4482216152605 / 0.0254**2  # pound-force per square inch, exact by definition of the pound and the inch
KG_CM2 = 98066.5  # kilogram-force per square centimetre, standard gravity 9.80665 m/s2
KPA = 1000.0
MBAR = 100.0
IN_WC = 249.08891  # conventional inch of water, 1000 kg/m3 and standard gravity (NIST SP 811, appendix B)

PAD_SIZES = {0.2: '1/2"', 0.4: '1/2"', 1: '1"', 2: '1"', 4: '1"', 7.5: '1"', 10: '1"', 20: '2"', 45: '2"', 60: '3"'}
DEPAD_SIZES = {3: '1"', 6: '1"', 12: '1"', 17: '2"', 20: '2"', 35: '2"', 70: '3"', 90: '3"',
               115: '4"', 140: '4"', 150: '4"', 200: '4"', 280: '6"'}

# How far apart neighbouring pressures may be, as a ratio. Above a row's pressure the program takes the next row and
# steps up once: a row's flow must stay below that of the next Cv of the series at the row before. 150 passes 7 % more
# than 140, and a flow grows about like the square root of the pressure; of the pad valves, 10 passes 33 % more than 7.5.
PAD_STEP, DEPAD_STEP = 1.25, 1.1

# Table, body size of each Cv, gas, pascal per pressure unit, flow unit per SCFH, pressures, their largest step.
VALVE_TABLES = [
    ("psi_Pad", PAD_SIZES, NITROGEN, PSI, 1,
     [1, 2, 3, 5, 7.5, 10, 15, 20, 25, 30, 35, 40, 50, 60, 70, 80, 100, 120, 140, 160, 180, 200], PAD_STEP),
    ("kgcm2_Pad", PAD_SIZES, NITROGEN, KG_CM2, NM3H_PER_SCFH,
     [0.07, 0.14, 0.2, 0.35, 0.5, 0.7, 1, 1.4, 1.76, 1.8, 2, 2.5, 3, 3.5, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14.06],
     PAD_STEP),
    ("kpa_Pad", PAD_SIZES, NITROGEN, KPA, NM3H_PER_SCFH,
     [6.9, 10, 15, 20, 35, 50, 70, 100, 140, 172, 200, 250, 300, 350, 400, 500, 600, 700, 800, 900, 1000, 1100, 1200,
      1300, 1379], PAD_STEP),
    ("psi_Depad", DEPAD_SIZES, AIR, PSI, 1,
     [0.07, 0.1, 0.15, 0.2, 0.25, 0.3, 0.4, 0.5, 0.6, 0.8, 1, 1.2, 1.4, 1.6, 1.8, 2, 2.2, 2.4, 2.6, 2.8], DEPAD_STEP),
    ("inwc_Depad", DEPAD_SIZES, AIR, IN_WC, 1,
     [2, 3, 4, 5, 6, 8, 10, 12, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 77], DEPAD_STEP),
    ("mbar_Depad", DEPAD_SIZES, AIR, MBAR, NM3H_PER_SCFH,
     [5, 7.5, 10, 12.5, 15, 20, 25, 30, 40, 50, 60, 70, 80, 100, 120, 140, 160, 180, 193], DEPAD_STEP),
]

# API Standard 2000 thermal venting of large tanks: volume, in-breathing (pad), and out-breathing (depad) of a liquid
# with a high flash point. A liquid with a low one breathes out as much as it breathes in.
LARGE_TANK_TABLES = {
    # US gallons, SCFH
    "USLargeTank": [
        (840000, 20000, 12000), (1050000, 24000, 15000), (1260000, 28000, 17000), (1470000, 31000, 19000),
        (1680000, 34000, 21000), (1890000, 37000, 23000), (2100000, 40000, 24000), (2520000, 44000, 27000),
        (2940000, 48000, 29000), (3360000, 52000, 31000), (3780000, 56000, 34000), (4200000, 60000, 36000),
        (5040000, 68000, 41000), (5880000, 75000, 45000), (6720000, 82000, 50000), (7560000, 90000, 54000),
    ],
    # m3, Nm3/h
    "MetriclargeTank": [
        (3000, 507, 304), (3180, 537, 322), (4000, 647, 388), (5000, 787, 472), (6000, 896, 538), (7000, 1003, 602),
        (8000, 1077, 646), (9000, 1136, 682), (10000, 1210, 726), (12000, 1345, 807), (14000, 1480, 888),
        (16000, 1615, 969), (18000, 1750, 1047), (20000, 1877, 1126), (25000, 2179, 1307), (30000, 2495, 1497),
    ],
}


def capacity(cv, gauge_psi, specific_gravity):
    """Flow in SCFH from `gauge_psi` above atmosphere to atmosphere."""
    inlet = ATMOSPHERE + gauge_psi
    x = min(gauge_psi / inlet, XT)
    expansion = 1 - x / (3 * XT)
    return N7 * cv * inlet * expansion * math.sqrt(x / (specific_gravity * INLET_TEMPERATURE))


def with_steps(pressures, largest_step):
    """`pressures` with as few evenly spaced ones between any two as `largest_step` takes."""
    for low, high in zip(pressures, pressures[1:]):
        parts = math.ceil((high - low) / (low * (largest_step - 1)) - 1e-9)
        yield from (float(f"{low + (high - low) * part / parts:.4g}") for part in range(parts))
    yield pressures[-1]


def four_digits(value):
    """`value` to four significant digits, written without an exponent."""
    return format(Decimal(f"{value:.3e}").normalize(), "f")


def write(name, header, rows):
    with open(DIRECTORY / f"{name}.csv", "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(header)
        writer.writerows(rows)


for name, sizes, gas, pascal, flow_unit, pressures, largest_step in VALVE_TABLES:
    write(name, ["Pressure", "flow", "Bodysize", "CV"],
          [(f"{pressure:g}", four_digits(flow_unit * capacity(cv, pressure * pascal / PSI, gas)), size, cv)
           for pressure in with_steps(pressures, largest_step) for cv, size in sizes.items()])

for name, rows in LARGE_TANK_TABLES.items():
    write(name, ["TankVol", "Pad", "DepadHFP", "DepadLFP"], [(*row, row[1]) for row in rows])
