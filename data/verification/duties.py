"""The duties of the verification list, without their answers: what each is there for, and its entries."""

UNITS = {"PSI": "US", "in wc": "US", "kg/cm2": "Metric", "kPa": "Metric", "mbar": "Metric"}


def duty(name, valve, pump, pressure, volume=None, gravity="", gas="", boiling="", flash=""):
    """One row. `valve` is like "61 PSI" (pad) or "depad mbar"; with a volume it is sized by API-2000."""
    kind, unit = valve.split(" ", 1)
    row = {"Tag Number": name, "Valve Model": "Series 61" if kind == "61" else "Series 63",
           "Valve Type": "Depad" if kind == "depad" else "Pad",
           "Sizing Method": "Direct Displacement" if volume is None else "API-2000",
           "Units of Measure": UNITS[unit], "Units of Pressure": unit, "Pump Rate": pump, "Pressure": pressure,
           "Tank Volume": "" if volume is None else volume, "Gas": gas, "Specific Gravity": gravity,
           "Boiling Point": boiling, "Flash Point": flash}
    return {column: entry if isinstance(entry, str) else f"{entry:.15g}" for column, entry in row.items()}


def factors():
    """Each to a flow ending in a half that only the factor of 24 binary digits rounds as shown, and to five digits."""
    yield duty("pump flow, pad, US", "61 PSI", 100, 50, 10000)
    yield duty("pump flow, pad, metric", "61 kPa", 150, 500, 100)
    yield duty("displaced flow, pad, US", "61 PSI", 100, 50)
    yield duty("displaced flow, pad, metric", "63 kg/cm2", 150, 5)
    yield duty("displaced flow, depad, US", "depad in wc", 20, 20)
    yield duty("displaced flow, depad, metric", "depad mbar", 50, 50)
    yield duty("pump flow, high point, US", "depad PSI", 7.5, 1, 1000, flash=120)
    yield duty("pump flow, low point, US", "depad PSI", 15, 1, 1000, flash=80)
    yield duty("pump flow, high point, metric", "depad mbar", 150, 50, 100, flash=60)
    yield duty("pump flow, low point, metric", "depad mbar", 75, 50, 100, flash=20)
    yield duty("breathing, pad, US", "61 PSI", 1, 50, 525)
    yield duty("breathing, pad, metric", "61 kPa", 1, 500, 1500)
    yield duty("breathing, high point, US", "depad PSI", 1, 1, 5000, flash=120)
    yield duty("breathing, low point, US", "depad PSI", 1, 1, 525, flash=80)
    yield duty("breathing, high point, metric", "depad mbar", 1, 50, 125, flash=60)
    yield duty("breathing, low point, metric", "depad mbar", 1, 50, 1500, flash=20)
    for units, pad, depad, pressures in ("US", "61 PSI", "depad PSI", (50, 1)), ("metric", "61 kPa", "depad mbar", (500, 50)):
        yield duty(f"pump flow to five digits, pad, {units}", pad, 9999, pressures[0], 1)
        yield duty(f"displaced flow to five digits, pad, {units}", pad, 9999, pressures[0])
        yield duty(f"displaced flow to five digits, depad, {units}", depad, 9999, pressures[1])
        yield duty(f"pump flow to five digits, high point, {units}", depad, 9999, pressures[1], 1, flash=200)
        yield duty(f"pump flow to five digits, low point, {units}", depad, 9999, pressures[1], 1, flash=20)


def points():
    for unit, pressure, flash, boiling in ("PSI", 1, 100, 300), ("mbar", 50, 38, 149):
        for name, of_flash, of_boiling in [
                ("flash point at its limit", flash, ""), ("flash point just below", flash - 0.01, ""),
                ("boiling point at its limit", "", boiling), ("boiling point just below", "", boiling - 0.01),
                ("high flash point, low boiling point", flash, boiling - 1),
                ("low flash point, high boiling point", flash - 1, boiling)]:
            yield duty(f"{name}, {unit}", f"depad {unit}", 10, pressure, 500, flash=of_flash, boiling=of_boiling)


def tanks():
    for units, pad, depad, pressures, limit, above, row, largest, beyond in [
            ("US", "61 PSI", "depad PSI", (200, 2.8), 840000, 840000.1, 2000000, 7560000, 7560000.5),
            ("metric", "61 kPa", "depad mbar", (1379, 193), 3179, 3179.01, 8000, 30000, 30000.01)]:
        for where, volume in [("at the limit of the factor", limit), ("just above it", above), ("on a row", row),
                              ("between two rows", row * 1.25), ("the largest", largest), ("too large", beyond)]:
            yield duty(f"tank {where}, pad, {units}", pad, 1, pressures[0], volume)
            yield duty(f"tank {where}, high point, {units}", depad, 1, pressures[1], volume, flash=200)
            yield duty(f"tank {where}, low point, {units}", depad, 1, pressures[1], volume, flash=20)
        yield duty(f"tank too large, by displacement, {units}", pad, 1, pressures[0])


def entries():
    yield duty("no pump rate", "61 PSI", "", 60, 500)
    yield duty("no pressure", "61 PSI", 100, "", 500)
    yield duty("no volume", "61 PSI", 100, 60, "")
    yield duty("no point", "depad PSI", 100, 1, 500)
    yield duty("no point by displacement", "depad PSI", 10, 1)
    yield duty("supply pressure 0, before pump rate 0", "61 PSI", 0, 0, 500)
    yield duty("differential pressure 0", "depad PSI", 100, 0, 500, flash=60)
    yield duty("pump-out rate 0", "61 PSI", 0, 60, 500)
    yield duty("pump-in rate 0, before no point", "depad PSI", 0, 1, 500)
    yield duty("no point, before volume 0", "depad PSI", 100, 1, 0)
    yield duty("volume 0, US", "61 PSI", 100, 60, 0)
    yield duty("volume 0, metric", "61 kPa", 100, 500, 0)
    yield duty("the largest pump rate", "61 PSI", 100000, 200, 500)
    yield duty("pump rate too large, before pressure 0", "61 PSI", 100000.5, 0, 500)


def gravities():
    for gas in "Nitrogen", "Air", "Dry CO2", "Natural Gas":
        yield duty(f"{gas}, pad", "61 PSI", 100, 45, gas=gas)
        yield duty(f"{gas}, depad", "depad PSI", 30, 1.5, gas=gas)
    yield duty("the gas of no name, pad", "61 kPa", 100, 400)
    yield duty("the gas of no name, depad", "depad mbar", 100, 30)
    yield duty("gas factor 0.125 is 0.13", "depad in wc", 1, 30, gravity=64)
    yield duty("gas factor 0.985 is 0.99 (in binary it lies below)", "61 PSI", 100, 45, gravity=1)
    yield duty("light gas", "61 PSI", 100, 45, gravity=0.07)
    yield duty("gravity 0", "61 PSI", 100, 50, gravity=0)
    yield duty("gas factor 0", "61 PSI", 100, 50, gravity=1000000)


def pressures(ranges):
    flows = {"PSI": 10, "kg/cm2": 0.4, "kPa": 0.4, "in wc": 10, "mbar": 2}
    for kind, units in ("61", ranges["Series 61"]), ("63", ranges["Series 63"]), ("depad", ranges["Depad"]):
        for unit, (lowest, highest) in units.items():
            low, high = float(lowest), float(highest)
            for where, pressure in [("below the range", low * 0.99999), ("at its lowest", low), ("at its highest", high),
                                    ("above the range", high * 1.00001)]:
                valve = f"{kind} {unit}"
                yield duty(f"{where}, {valve}", valve, flows[unit], f"{pressure:.8g}")
    for unit, least, pump in ("PSI", 25, 100), ("kg/cm2", 1.8, 20), ("kPa", 172, 20):
        for where, pressure in ("below", least * 0.9999), ("at", least):
            yield duty(f"Cv above 0.4 {where} its least pressure, {unit}", f"61 {unit}", pump, f"{pressure:.6g}")
            yield duty(f"Cv 0.4 {where} the pressure of larger ones, {unit}", f"61 {unit}", pump / 2, f"{pressure:.6g}")
    yield duty("in the range, below the least pressure, 63 kg/cm2", "63 kg/cm2", 1, 1.79)
    yield duty("at the least pressure, 63 kg/cm2", "63 kg/cm2", 1, 1.8)


def series(bodies):
    """Each Cv found by a flow that the one before it has at that very row, and each stepped up at a lower pressure."""
    for kind, valve, row, between, at_row, at_between in [("Pad", "63 PSI", 50, 30, 2200, 1528),
                                                          ("Depad", "depad PSI", 2, 1.5, 330, 280)]:
        before = None
        for cv in bodies[kind]:
            reached = at_row * before if before else 8
            yield duty(f"{kind} Cv {cv}", valve, round(reached) / 8, row)
            needed = max(round(at_row * (before or 0)), int(at_between * cv + 1))
            yield duty(f"step up from {kind} Cv {cv}", valve, needed / 8, between)
            before = cv


def steps():
    yield duty("a flow just below the capacity", "61 PSI", 190.999, 30)
    yield duty("a flow that is the capacity in 24 binary digits", "61 PSI", 190.999999, 30)
    yield duty("a flow at the capacity", "61 PSI", 191, 30)
    yield duty("stepped to the flow of the table, not of the gas", "61 PSI", 248, 30, gravity=0.6)
    yield duty("a larger body after a step", "63 kg/cm2", 7, 1.8, gravity=1)
    yield duty("a smaller body after a step", "depad mbar", 99, 6)
    yield duty("still too small after a step, pad", "63 kPa", 14.9, 180)
    yield duty("still too small after a step, depad", "depad mbar", 11, 6)
    yield duty("a step that the least pressure forbids", "61 PSI", 60, 20)
    yield duty("the first row above, of a higher pressure", "61 PSI", 16500, 50)
    yield duty("more than any valve passes, pad", "61 PSI", 60000, 200)
    yield duty("more than any valve passes, depad", "depad PSI", 100000, 2)
    yield duty("capacity 0", "depad mbar", 0.1, 5, gravity=625)
    for pad in "61 kg/cm2", "61 kPa":
        yield duty(f"step up, {pad}", pad, {"61 kg/cm2": 56, "61 kPa": 57}[pad], {"61 kg/cm2": 3, "61 kPa": 300}[pad])
    yield duty("step up, in wc", "depad in wc", 94, 30)
    yield duty("step up, mbar", "depad mbar", 26, 75)


def roundings():
    for flow in 0.999, 0.29, 1, 1.09, 2.97, 9.99, 10.02, 12.5, 13.5, 0.45, 2.5, 3.5:
        yield duty(f"pump flow {flow}", "61 PSI", flow / 8, 1)
    yield duty("breathing below 1", "61 PSI", 1, 10, 41.9)
    yield duty("breathing below 10", "61 PSI", 1, 10, 419)
    yield duty("50 + 50 are 101", "depad mbar", 50, 50, 500, flash=60)
    yield duty("pad: whole before the gas factor", "61 PSI", 5, 26.3, gravity=0.6)
    yield duty("pad: a half to the even neighbour", "61 PSI", 400, 101.5)
    yield duty("pad, stepped: whole after the gas factor", "61 PSI", 60, 30, gravity=0.6)
    yield duty("depad: whole after the gas factor", "depad PSI", 1.2, 0.55, gravity=0.97)
    yield duty("Cv 0.2 is not cut", "61 kg/cm2", 1, 5)
    yield duty("2.5 is looked up as 2", "61 PSI", 0.3125, 1, gravity=388)
    yield duty("2.55 is shown as 2.5 and looked up as 2", "61 PSI", 0.31875, 1, gravity=388)
    yield duty("3.5 is looked up as 4", "61 PSI", 0.4375, 1, gravity=151.6)
    yield duty("0.45 is looked up as 0", "61 PSI", 0.05625, 1, gravity=9702)
    yield duty("689.5 through the gas factor is 690", "depad PSI", 172.375, 1, gravity=0.25)
    yield duty("207.5 through the gas factor as held is 207", "depad mbar", 164.26, 193, gravity=1.5625)
    yield duty("584.5 through the gas factor is 584", "depad in wc", 146.125, 20, gravity=0.25)


def advice():
    """A flow of 440 at 50 psi, 930 at 50 in wc and 15.6 at 50 mbar are the whole capacity."""
    for share in 0.0099, 0.01, 0.015, 0.125, 0.199, 0.2, 0.201, 0.375, 0.7, 0.701, 0.9951:
        yield duty(f"pad, {share} of the capacity", "63 PSI", f"{share * 440 / 8:.12g}", 50)
    for share in 0.499, 0.5, 0.501, 0.8, 0.801:
        yield duty(f"depad, {share} of the capacity", "depad in wc", f"{share * 930 / 8:.12g}", 50)
    for valve, pump, pressure in [("61 PSI", 0.5, 1), ("61 PSI", 0.5, 1.01), ("61 PSI", 1, 25), ("61 kg/cm2", 0.1, 0.9),
                                  ("61 kg/cm2", 0.1, 1.1), ("63 PSI", 1, 25), ("63 PSI", 1, 25.01), ("63 kg/cm2", 1, 5),
                                  ("63 kPa", 1, 172), ("depad in wc", 1, 25), ("depad in wc", 1, 25.01),
                                  ("depad mbar", 1, 25), ("depad mbar", 1, 25.01), ("depad PSI", 1, 1)]:
        yield duty(f"hardly used at {pressure}, {valve}, flow {pump}", valve, pump, pressure)


def all_duties(ranges, bodies):
    for rows in (factors(), points(), tanks(), entries(), gravities(), pressures(ranges), series(bodies), steps(), roundings(),
                 advice()):
        yield from rows
