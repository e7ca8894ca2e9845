#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A model of the report tool: what it has to say of a capture and a table.

usage: model.py INPUT REPORT

Reads the capture INPUT.cap and the table INPUT.csv, and compares the reports on them, REPORT.csv,
REPORT.json and REPORT.jsonl, with the model. All are read with Python's own readers. Scaled values are
those of exact decimal arithmetic, and those of a fraction are those of double arithmetic.
"""
import csv
import decimal
import fractions
import itertools
import json
import re
import sys

KEYS = ["register", "scan", "field", "lowest", "width", "raw", "value", "unit", "description", "name"]
COLUMNS = 10
decimal.getcontext().prec = 100


def numbered_lines(path):
    """(number, text) of each line that is neither blank nor a comment. What is not UTF-8 becomes
    U+FFFD."""
    with open(path, "rb") as file:
        text = file.read().decode("utf-8-sig", "replace").replace("\r\n", "\n")
    return [(number, line) for number, line in enumerate(text.split("\n"), 1)
            if line.strip() and not line.lstrip().startswith("#")]


def integer(text):
    return int(text, 16 if text[:2] in ("0x", "0X") else 10)


class Field:
    def __init__(self, columns):
        _, self.name, lowest, width, radix, self.scale, self.offset, self.unit, self.description, \
            names = columns
        self.lowest, self.width, self.radix = integer(lowest or "0"), integer(width), radix or "X"
        self.names = {}
        for entry in names.split(";") if names else ():
            code, name = entry.split("=", 1)
            self.names[integer(code.strip()) % (1 << self.width)] = name.strip()
        if not self.scale and (self.unit or self.offset):
            self.scale = "1"

    def signed(self, raw):
        return raw - (raw >> (self.width - 1) << self.width) if self.radix in "dDiI" else raw

    def raw_text(self, raw):
        if self.radix in "bB":
            return f"0b{raw:0{self.width}b}"
        if self.radix in "oO":
            return f"0o{raw:0{(self.width + 2) // 3}o}"
        if self.radix in "xX":
            return f"0x{raw:0{(self.width + 3) // 4}{self.radix}}"
        if self.radix in "sS":
            characters = raw.to_bytes((self.width + 7) // 8, "big")
            digits = characters.lstrip(b"\0") or b"\0"  # the value 0 has one digit
            return digits.rjust(len(characters)).decode("latin-1")
        return str(self.signed(raw))

    def scaled(self, raw):
        if not self.scale:
            return None
        places = decimals(self.offset)
        if "/" not in self.scale:
            exact = self.signed(raw) * decimal.Decimal(self.scale) + decimal.Decimal(self.offset or 0)
            return f"{exact:.{max(places, decimals(self.scale))}f}"
        numerator, denominator = self.scale.split("/")
        step = abs(fractions.Fraction(numerator) / fractions.Fraction(denominator))
        places = max(places, next(d for d in itertools.count() if step * 10 ** d >= 1))
        value = self.signed(raw) * (float(numerator) / float(denominator)) + float(self.offset or 0)
        return f"{value:.{places}f}"


def decimals(text):
    return max(0, -decimal.Decimal(text or "0").as_tuple().exponent)


def read_table(path, faults=()):
    """{register in upper case: [its own row or None, fields]}, without the lines numbered in faults."""
    table = {}
    for number, line in numbered_lines(path):
        if number in faults:
            continue
        # Blanks around columns do not count, those within quotes do.
        columns = [column if '"' + column.replace('"', '""') + '"' in line else column.strip()
                   for column in next(csv.reader([line], skipinitialspace=True))]
        entry = table.setdefault(columns[0].upper(), [None, []])
        field = Field(columns + [""] * (COLUMNS - len(columns)))
        if field.name:
            entry[1].append(field)
        else:
            field.name = "(whole)"
            entry[0] = field
    return table


def read_scans(path, table, faults=()):
    """(register as it was named first, number of the scan, width, value)...; a line that is numbered
    in faults has neither width nor value."""
    names, counts = {}, {}
    for number, line in numbered_lines(path):
        line = line.partition("#")[0].strip()
        short = re.match(r"([^\s:=]+)\s*[:=]\s*(.*)", line)
        if short and (number in faults or table.get(short[1].upper(), [None])[0]):
            name, digits = short.groups()
            width = "" if number in faults else str(table[name.upper()][0].width)
        else:
            name, width, digits = (line.split(None, 2) + ["", ""])[:3]
        key = name.upper()
        counts[key] = counts.get(key, 0) + 1
        names.setdefault(key, name)
        if number in faults:
            yield names[key], counts[key], None, None
        else:
            value = int("".join(digits.split()).replace("_", ""), 16)
            yield names[key], counts[key], integer(width), value


def gaps(fields, width):
    """The runs of bits that no field covers, the highest first."""
    covered = [any(field.lowest <= bit < field.lowest + field.width for field in fields)
               for bit in range(width)]
    runs, bit = [], 0
    for is_covered, run in itertools.groupby(covered):
        length = len(list(run))
        if not is_covered:
            runs.insert(0, Field(["", "", str(bit), str(length), "X", "", "", "", "", ""]))
        bit += length
    return runs


def model(capture, table_path, changes=False, capture_faults=(), table_faults=()):
    """[scan with its fields...], as the form for lines has them."""
    table = read_table(table_path, table_faults)
    named = any(field.names for row, fields in table.values() for field in fields + [row] if field)
    previous, result = {}, []
    for register, scan, width, value in read_scans(capture, table, capture_faults):
        if value is None:
            continue
        row, fields = table.get(register.upper(), [None, []])
        row = row or Field(["", "(whole)", "0", str(width), "X", "", "", "", "", ""])
        fields = [field for field in fields if field.lowest + field.width <= width]
        before = previous.get(register) if changes else None
        items = []
        for field, is_gap in [(field, False) for field in fields or [row]] + \
                [(gap, True) for gap in gaps(fields or [row], width)]:
            raw = value >> field.lowest & (1 << field.width) - 1
            base = 0 if before is None else before >> field.lowest & (1 << field.width) - 1
            if raw == base and (is_gap or before is not None):
                continue
            item = [field.name, field.lowest, field.width, field.raw_text(raw), field.scaled(raw),
                    field.unit, field.description, field.names.get(raw)]
            items.append(dict(zip(KEYS[2:] if named else KEYS[2:-1], item)))
        previous[register] = value
        if items:
            result.append({"register": register, "scan": scan, "width": width,
                           "description": row.description, "fields": items})
    return result


def flat(scans):
    return [{"register": scan["register"], "scan": scan["scan"]} | item
            for scan in scans for item in scan["fields"]]


def printable(text):
    return "".join(c if " " <= c <= "~" else "." for c in text)


def compare(what, actual, expected):
    for number, (a, e) in enumerate(zip(actual, expected)):
        if a != e:
            sys.exit(f"{what}, item {number}:\n  {a}\ninstead of\n  {e}")
    if len(actual) != len(expected):
        sys.exit(f"{what}: {len(actual)} items instead of {len(expected)}")


def texts(value):
    """The value with its numbers as text."""
    if isinstance(value, dict):
        return {key: texts(item) for key, item in value.items()}
    if isinstance(value, list):
        return [texts(item) for item in value]
    return value if value is None else str(value)


def check(expected, form, report):
    """Compares the bytes of a report in a form with a model."""
    text = report.decode("utf-8")
    as_json = lambda text: json.loads(text, parse_float=str, parse_int=str)
    items = flat(expected)
    if form == "json":
        compare("JSON", as_json(text), texts(items))
    elif form == "jsonl":
        compare("JSON lines", [as_json(line) for line in text.split("\n")[:-1]], texts(expected))
    else:
        rows = list(csv.reader(text.split("\r\n")[:-1], strict=True))
        compare("CSV", rows, [list(items[0])] + [
            [printable(value) if key == "raw" else "" if value is None else str(value)
             for key, value in item.items()] for item in items])


def main():
    expected = model(sys.argv[1] + ".cap", sys.argv[1] + ".csv")
    for form in ("csv", "json", "jsonl"):
        with open(sys.argv[2] + "." + form, "rb") as file:
            check(expected, form, file.read())


if __name__ == "__main__":
    main()
