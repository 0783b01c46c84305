"""Reads all that a run left by docs/FORMATS.md alone, and compares it with the JSON of zenta-export.

    check_outputs.py FOLDER SCHEMA

FOLDER holds report.txt, results.json and, where the run wrote them, residuals.res, Ambiq.b, ion.dat,
epochs.dat and dcb.dat. Ends with status 1 at the first difference and says where it is. Needs
python3-jsonschema.
"""
import json
import re
import struct
import sys
from fractions import Fraction
from pathlib import Path

import jsonschema

METRES_PER_TECU = Fraction("40.308193e16") / Fraction("1575.42e6") ** 2
METRES_PER_NS = Fraction(299792458, 10**9)


def check(good, what):
    if not good:
        raise SystemExit(what)


class Report:
    """The lines of the report, taken one after the other."""

    def __init__(self, text):
        check(text.endswith("\n"), "the report does not end with a line feed")
        self.lines = text.split("\n")[:-1]
        self.at = 0

    def line(self):
        check(self.at < len(self.lines), "the report ends too early")
        self.at += 1
        return self.lines[self.at - 1]

    def is_next(self, start):
        return self.at < len(self.lines) and self.lines[self.at].startswith(start)

    def expect(self, text):
        line = self.line()
        check(line == text, f"report line {self.at}: expected {text!r}, found {line!r}")

    def until(self, text):
        while self.line() != text:
            pass

    def fields(self, *layout):
        return fields(self.line(), layout, f"report line {self.at}")


def fields(line, layout, where):
    """Numbers of a line. A layout is made of texts, of (width, decimals) for a number, of "*" for
    a number of any width and of "w" and a width for a word."""
    at, values = 0, []
    for part in layout:
        if isinstance(part, str) and part == "*":
            word = re.compile(r"\d+").match(line, at).group()
            values.append(int(word))
            at += len(word)
        elif isinstance(part, str):
            check(line.startswith(part, at), f"{where}: expected {part!r} at {at} of {line!r}")
            at += len(part)
        else:
            width, decimals = part
            word = line[at : at + width]
            form = r" *-?\d+" + (rf"\.\d{{{decimals}}}" if decimals else "")
            check(re.fullmatch(form, word), f"{where}: {word!r} at {at} is no number {part}")
            values.append(float(word) if decimals else int(word))
            at += width
    check(at == len(line), f"{where}: {line[at:]!r} stands behind the last column")
    return values


# ---- Lines of the report ------------------------------------------------------------------------

EPOCH = [(6, 0), (8, 1)]


def outliers(report):
    found = []
    while report.is_next("  EPH: "):
        line = report.line()
        name = re.search(r"OUTLIER (\S+) \(([FV])\)", line)
        check(name, f"report line {report.at}: no outlier")
        decimals = 4 if name.group(1) == "L1-L2" else 3
        values = fields(
            line,
            ["  EPH: ", (7, 0), "  ", *EPOCH, "   PRN: ", (4, 0), f"  OUTLIER {name.group(1)} "
             f"({name.group(2)}): ", (10, decimals)],
            f"report line {report.at}",
        )
        found.append([{"F": "misclosure", "V": "residual"}[name.group(2)], name.group(1), *values])
    return found


def summary(report):
    return report.fields("  DONE!        #OBS: ", (10, 0), "     #UNK: ", (10, 0), "     #OUT: ",
                         (10, 0), "      REF. VAR. APOSTERORI: ", (10, 4), "    [SQRT]: ", (10, 3))


def statistics(report):
    s = {}
    s["iterations"], s["last_correction_m"] = report.fields(
        "  #ITERATIONS: ", (10, 0), "       THRESHOLD: ", (10, 3))
    (s["epochs"],) = report.fields("  #EPOCHS    : ", (10, 0))
    systems = ["    G: ", (8, 0), "    R: ", (8, 0)]
    s["observations_counted"] = report.fields("  #OBS       : ", (10, 0), *systems)[0]
    s["outliers"] = report.fields("  #OUTLIERS  : ", (10, 0), *systems)[0]
    report.expect("")
    (s["apriori_deviation"],) = report.fields(
        "  REF. STD. APRIORI                              : ", (15, 2))
    (s["aposteriori_deviation"],) = report.fields(
        "  REF. STD. APOSTERIORI                          : ", (15, 2))
    s["aposteriori_variance"] = report.fields(
        "  REFERENCE VARIANCE OF UNIT WEIGHT [GLOBAL TEST]: ", (15, 2), "         [SQRT] ",
        (9, 2))[0]
    report.expect("")
    return s


def receiver(report):
    biases = {}
    for name, unit in (("P1-C1", " m"), ("P2-C1", "")):
        if report.is_next(f"  {name} DCB: "):
            biases[name] = report.fields(
                f"  {name} DCB: ", (12, 4), f"{unit} +- ", (10, 4), f"{unit}        ", (12, 5),
                " msec +- ", (10, 5), " msec     [", "*", f" OBS / {name} DCB]")
    return biases


def satellites(report):
    rule = " " + "-" * 126
    report.until(rule)
    rows = {}
    one = [(12, 4), " +-", (8, 4), (12, 4), " +-", (8, 4), "   [", (6, 0), "]  "]
    length, blank = 59, " " * 64
    while not report.is_next(rule):
        line = report.line()
        rest, biases = line[5:], []
        for _ in range(2):
            if rest.startswith(blank):
                biases.append(None)
                rest = rest[len(blank):]
            else:
                biases.append(fields(rest[:length], one, f"report line {report.at}"))
                rest = rest[length:]
        check(rest == "", f"report line {report.at}: {rest!r} stands behind the last column")
        rows[int(line[:5])] = biases
    report.expect(rule)
    return rows


def ambiguities(report):
    report.expect("  -----------------------------------")
    (count,) = report.fields("    Number of all ambiguities: ", (10, 0))
    for _ in range(3):
        report.line()
    rows = []
    while len(rows) < count:
        if report.is_next("   "):
            line = report.line()
            m = re.fullmatch(
                r"(.{6})     ([GR])(..)   (.{5}-..-.. ..:..:..)   (.{5}-..-.. ..:..:..)(.{20})"
                r" \+- (.{10})(.{15})", line)
            check(m, f"report line {report.at}: no ambiguity: {line!r}")
            rows.append([int(m[1]), m[2] + f"{int(m[3]):02d}", m[4].strip().replace(" ", "T"),
                         m[5].strip().replace(" ", "T"), *number(m[6], 4), *number(m[7], 4),
                         *number(m[8], 0)])
        else:
            report.expect("")
    return rows


def number(word, decimals):
    return fields(word, [(len(word), decimals)], repr(word))


def intervals(report):
    report.until(next(line for line in report.lines[report.at:] if line.startswith(" ---") and
                      len(line) > 60))
    rows, texts = [], []
    while not report.is_next(" ---"):
        line = report.line()
        layout = [" ", *EPOCH, (12, 4), " +-", (8, 4), (14, 4), " +-", (8, 4)]
        if len(line) > 100:
            layout += [(12, 4), " +-", (8, 4), (14, 4), " +-", (8, 4)]
        rows.append(fields(line, layout + ["         [", (6, 0), "]  "], f"report line {report.at}"))
        texts.append(line[: line.index("         [")])
    report.line()
    return rows, texts


def epochs(report):
    report.until(next(line for line in report.lines[report.at:] if line.startswith(" ---")))
    rows, texts = [], []
    while not report.is_next(" ---"):
        line = report.line()
        layout = [" ", *EPOCH] + [(12, 4), " +-", (8, 4)] * ((len(line) - 15) // 23)
        rows.append(fields(line, layout, f"report line {report.at}"))
        texts.append(line)
    report.line()
    check(report.fields("  #of estimated Iono delays: ", "*") == [len(rows)], "count of epochs")
    report.expect("")
    return rows, texts


def sections(text):
    """Everything that the report has, by section."""
    report, r = Report(text), {}
    report.until("_" * 120)
    for _ in range(3):
        report.line()
    report.expect("=" * 120)
    report.until("INPUT DATA (FILE NAMES):")
    report.until("PROCESSING SETTINGS USED:")
    r["eclipses"] = []
    phases = "ECLIPSING EPOCHS FOR SATELLITES:" in report.lines
    if phases:
        report.until("  -------------------------------")
        while not report.is_next("  ---"):
            line = report.line()
            m = re.fullmatch(r"(.{5})(     [GR])(..)(.{20})", line)
            check(m, f"report line {report.at}: no eclipse: {line!r}")
            r["eclipses"].append([m[2].strip() + f"{int(m[3]):02d}", int(m[4])])
    report.until("PROCESSING DATA:")
    r["outliers"] = outliers(report)
    r["stages"] = [summary(report)]
    report.expect("")
    if report.is_next("PROCESSING DATA - OUTLIER DETECTION:"):
        report.line()
        r["outliers"] += outliers(report)
        r["stages"].append(summary(report))
        report.expect("")
    report.until("-------------------------------------------------------------")
    report.expect("")
    r["statistics"] = statistics(report)
    r["receiver"], r["satellites"] = {}, {}
    r["ambiguities"], r["intervals"], r["interval_lines"] = [], [], []
    if report.is_next(" RECEIVER GPS DCB VALUES:"):
        report.line()
        report.expect(" --------------------")
        report.expect("")
        r["receiver"] = receiver(report)
        report.expect("")
    for system in ("GPS", "GLONASS"):
        if report.is_next(f" SATELLITE {system} DCB VALUES:"):
            r["satellites"] |= satellites(report)
            report.expect("")
            if system == "GLONASS":
                report.expect("")
    if report.is_next("  PHASE L4 AMBIGUITIES (REAL VALUES):"):
        report.line()
        r["ambiguities"] = ambiguities(report)
        report.until("")
    check(phases or not r["ambiguities"], "ambiguities without phases")
    while report.is_next("") and not report.is_next(" IONO") and not report.is_next("PRINTING") \
            and not report.is_next("ESTIMATION OF EPOCH") and report.at < len(report.lines):
        report.expect("")
    if report.is_next(" IONOSPHERE DELAYS:"):
        r["intervals"], r["interval_lines"] = intervals(report)
        report.expect("")
        report.expect("")
    r["residuals"] = r["epochs"] = None
    r["epoch_lines"] = []
    if report.is_next("PRINTING OF RESIDUALS:"):
        report.line()
        report.line()
        report.expect("")
        check(report.line().startswith("  Output residual file : "), "name of the residual file")
        (r["residuals"],) = report.fields("  #of printed residuals: ", "*")
        report.expect("")
    if report.is_next("ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:"):
        r["epochs"], r["epoch_lines"] = epochs(report)
    check(report.at == len(report.lines), f"report line {report.at + 1}: nothing was to follow")
    return r


# ---- Comparison with the JSON -------------------------------------------------------------------


def satellite_name(number):
    return f"G{number:02d}" if number < 100 else f"R{number - 100:02d}"


def day_second(t):
    return [t["day"], t["second"]]


def compare(what, expected, found):
    check(expected == found, f"{what}: the report has {expected}, the JSON {found}")


def check_converted(value, metres, scale, what):
    exact = Fraction(str(metres)) / scale
    check(abs(Fraction(str(value)) - exact) <= Fraction(1, 2 * 10**6), f"{what}: {value} of {metres} m")


def delay(d, unit=""):
    for name in ("", "sigma_"):
        check_converted(d[f"{name}tecu{unit}"], d[f"{name}m{unit}"], METRES_PER_TECU, "TECU")
    return [d[f"m{unit}"], d[f"sigma_m{unit}"]]


def bias(b):
    if b is None:
        return None
    for name in ("", "sigma_"):
        check_converted(b[f"{name}ns"], b[f"{name}m"], METRES_PER_NS, "ns")
    return [b["m"], b["sigma_m"], b["us_printed"], b["sigma_us_printed"], b["observations"]]


def gradients(row):
    return [] if row.get("gradient_east") is None else (
        delay(row["gradient_east"]) + delay(row["gradient_north"]))


def compare_with_json(r, j):
    for key, value in r["statistics"].items():
        compare(key, value, j["statistics"][key])
    compare("stages", r["stages"],
            [[s["observations_counted"], s["unknowns"], s["outliers"], s["variance"], s["deviation"]]
             for s in j["statistics"]["stages"]])
    for name, key in (("P1-C1", "p1c1"), ("P2-C1", "p2c1")):
        compare(f"receiver {name}", r["receiver"].get(name), bias(j["receiver_dcb"][key]))
    compare("satellites", {satellite_name(s): b for s, b in r["satellites"].items()},
            {s["satellite"]: [bias(s["p1c1"]), bias(s["p2c1"])] for s in j["satellite_dcb"]})
    compare("ambiguities", r["ambiguities"],
            [[a["id"], a["satellite"], a["first"]["iso"], a["last"]["iso"], a["m"], a["sigma_m"],
              a["observations"]] for a in j["ambiguities"]])
    compare("intervals", r["intervals"],
            [day_second(i["first"]) + delay(i["delay"]) + delay(i["rate"], "_per_h") + gradients(i) +
             [i["observations"]] for i in j["ionosphere"]])
    compare("epochs", r["epochs"], None if j["ionosphere_epochs"] is None else
            [day_second(e["time"]) + delay(e["delay"]) + gradients(e)
             for e in j["ionosphere_epochs"]])
    compare("eclipses", r["eclipses"],
            [[e["satellite"], e["observations"]] for e in j["eclipses"]])
    compare("outliers", [o[:5] + [satellite_name(o[5]), o[6]] for o in r["outliers"]],
            [[o["found_by"], o["observable"], o["epoch_index"], *day_second(o["time"]),
              o["satellite"], o["m"]] for o in j["outliers"]])


# ---- The other files ----------------------------------------------------------------------------


def extended(data, at):
    """80 bits of the x87 in 12 bytes."""
    significand, sign_exponent, padding = struct.unpack_from("<QHH", data, at)
    check(padding == 0, f"byte {at + 10}: the padding is not 0")
    check(significand == 0 or significand >> 63, f"byte {at}: no leading 1")
    power = (sign_exponent & 0x7FFF) - 16383 - 63
    value = significand << power if power > 0 else significand / (1 << -power)
    return float(-value if sign_exponent >> 15 else value)


def residuals(data):
    (count,) = struct.unpack_from("<h", data)
    head = list(struct.unpack_from(f"<{count}h", data, 2))
    at, found = 2 + 2 * count, []
    names = {1: "P1-C1", 2: "P2-C1", 5: "L1-L2"}
    while at < len(data):
        (day,) = struct.unpack_from("<I", data, at)
        second = extended(data, at + 4)
        (n,) = struct.unpack_from("<i", data, at + 16)
        check(n >= 1, f"byte {at + 16}: an epoch without a residual")
        at += 20
        values = []
        for _ in range(n):
            satellite, kind = struct.unpack_from("<hh", data, at)
            check(satellite in head, f"byte {at}: satellite {satellite} is not in the head")
            values.append([satellite_name(satellite), names[kind], extended(data, at + 4)])
            at += 16
        found.append([day, second, values])
    check(at == len(data), "the residual file ends within a residual")
    return found


def arcs(data):
    check(len(data) % 18 == 0, "the arc file ends within an arc")
    return list(struct.iter_unpack("<hiiii", data))


def expected_biases(r):
    """Lines of dcb.dat: who, and value and error of both biases; those that no observation
    determined have an error that the report does not tell."""
    rows = []
    if r["receiver"]:
        rows.append(["R" + " " * 8] + [r["receiver"].get(name, [0.0, 0.0])[:2]
                                       for name in ("P1-C1", "P2-C1")])
    for satellite, pair in r["satellites"].items():
        name = satellite_name(satellite)
        rows.append([f"S     {name[0]}{int(name[1:]):2d}"] +
                    [b[:2] if b else [0.0, "not told"] for b in pair])
    return rows


def found_biases(line):
    four = fields(line[9:], [(12, 4), (10, 4), (12, 4), (10, 4)], "dcb.dat")
    determined = [four[:2], four[2:]]
    return [line[:9]] + [[v, e] if v != 0 or e == 0 else [v, "not told"] for v, e in determined]


def check_files(folder, r, j):
    """Returns the names of the files that were there."""
    seen = []

    def text(name):
        path = folder / name
        if not path.exists():
            return None
        seen.append(name)
        content = path.read_text()
        check(content.endswith("\n"), f"{name} does not end with a line feed")
        return content.split("\n")[:-1]

    if (lines := text("ion.dat")) is not None:
        check(lines[0] == "#ION_TYPE: LINEAR" and lines[1].startswith("#"), "heads of ion.dat")
        compare("ion.dat", r["interval_lines"], lines[2:])
    if (lines := text("epochs.dat")) is not None:
        check(lines[0] == "#ION_TYPE: EPOCH BY EPOCH" and lines[1].startswith("#"),
              "heads of epochs.dat")
        compare("epochs.dat", r["epoch_lines"], lines[2:])
    if (lines := text("dcb.dat")) is not None:
        fields(lines[0], ["#REFERECNE EPOCH: ", *EPOCH], "dcb.dat line 1")
        check(lines[1].startswith("#"), "heads of dcb.dat")
        compare("dcb.dat", expected_biases(r), [found_biases(line) for line in lines[2:]])
    if (folder / "residuals.res").exists():
        seen.append("residuals.res")
        blocks = residuals((folder / "residuals.res").read_bytes())
        compare("number of residuals", r["residuals"], sum(len(b[2]) for b in blocks))
        compare("residuals", blocks,
                [day_second(b["time"]) + [[[v["satellite"], v["observable"], v["m"]]
                                           for v in b["values"]]] for b in j["residuals"]])
    if r["ambiguities"] and (folder / "Ambiq.b").exists():
        seen.append("Ambiq.b")
        compare("arcs", [[satellite_name(s), first, last] for s, first, _, last, _ in
                         arcs((folder / "Ambiq.b").read_bytes())],
                [[a["satellite"], a["first_epoch_index"], a["last_epoch_index"]]
                 for a in j["ambiguities"]])
    return seen


def main(folder, schema):
    folder = Path(folder)
    r = sections((folder / "report.txt").read_text())
    j = json.loads((folder / "results.json").read_text())
    validator = jsonschema.Draft202012Validator(json.loads(Path(schema).read_text()))
    for error in validator.iter_errors(j):
        raise SystemExit(f"{error.json_path}: {error.message}")
    compare_with_json(r, j)
    seen = check_files(folder, r, j)
    print(len(r["intervals"]), "intervals,", len(r["epochs"] or []), "epochs,",
          len(r["satellites"]), "satellites,", len(r["ambiguities"]), "ambiguities,",
          len(r["outliers"]), "outliers,", r["residuals"] or 0, "residuals;", *seen)


main(*sys.argv[1:])
