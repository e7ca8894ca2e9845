#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares reports on random tables and captures with a model.

usage: random_reports.py SEED COUNT TOOL...

Each of the COUNT tables and captures is reported in every form, whole and with show=changes, and read with
Python's own readers. Scaled values are those of exact decimal arithmetic; those of a fraction are those of
double arithmetic.
"""
import csv
import decimal
import fractions
import itertools
import json
import subprocess
import sys
import tempfile
from random import choice, getrandbits, randint, random, randrange, seed

WIDTHS = (1, 2, 7, 8, 9, 16, 31, 32, 33, 63, 64, 65, 100, 128, 129, 200)
SCALES = ("", "", "", "0.25", "1e-3", "100/255", "3.3/4096", "-1000/3", "0.47/47", "2")
MAX_SCALED_WIDTH = 32  # every scaled value is exact in the decimals that it has
decimal.getcontext().prec = 100


def integer(value):
    return choice((f"{value}", f"0x{value:X}", f"0X{value:x}"))


def decimals(text):
    return max(0, -decimal.Decimal(text or "0").as_tuple().exponent)


class Field:
    def __init__(self, name, lowest, width, radix="X", description=""):
        self.name, self.lowest, self.width, self.radix, self.description = name, lowest, width, radix, description
        self.scale = self.offset = self.unit = ""
        self.names = {}

    def part(self, value):
        return value >> self.lowest & (1 << self.width) - 1

    def signed(self, raw):
        return raw - (raw >> (self.width - 1) << self.width) if self.radix in "dDiI" else raw

    def raw_text(self, raw):
        letter = self.radix.lower()
        if letter in "box":
            digits = -(-self.width // {"b": 1, "o": 3, "x": 4}[letter])
            return f"0{letter}{raw:0{digits}{self.radix if letter == 'x' else letter}}"
        if letter == "s":
            characters = raw.to_bytes((self.width + 7) // 8, "big")
            digits = characters.lstrip(b"\0") or b"\0"  # the value 0 has one digit
            return digits.rjust(len(characters)).decode("latin-1")
        return str(self.signed(raw))

    def scaled(self, raw):
        scale = self.scale or ("1" if self.unit or self.offset else "")
        if not scale:
            return None
        places, numerator, _, denominator = decimals(self.offset), *scale.partition("/")
        if not denominator:
            value = self.signed(raw) * decimal.Decimal(scale) + decimal.Decimal(self.offset or 0)
            return f"{value:.{max(places, decimals(scale))}f}"
        step = abs(fractions.Fraction(numerator) / fractions.Fraction(denominator))
        places = max(places, next(d for d in itertools.count() if step * 10 ** d >= 1))
        value = self.signed(raw) * (float(numerator) / float(denominator)) + float(self.offset or 0)
        return f"{value:.{places}f}"

    def shown(self, value, named):
        raw = self.part(value)
        item = {"field": self.name, "lowest": str(self.lowest), "width": str(self.width), "raw": self.raw_text(raw),
                "value": self.scaled(raw), "unit": self.unit, "description": self.description}
        return item | ({"name": self.names.get(raw)} if named else {})

    def columns(self, register):
        codes = (f"{choice((f'{self.signed(code)}', f'0x{code:x}', f'0x00{code:X}'))}={choice(('', ' '))}{name}"
                 for code, name in self.names.items())
        description = f'"{self.description}"' if "," in self.description else self.description
        return [register, self.name, integer(self.lowest), integer(self.width), self.radix, self.scale, self.offset,
                self.unit, description, ";".join(codes)]


def random_field(name, register_width):
    lowest = randrange(register_width)
    field = Field(name, lowest, randint(1, register_width - lowest), choice("bBoOxXuUdDiIsS"),
                  choice(("", "plain", "with, comma")))
    if field.width <= MAX_SCALED_WIDTH:
        field.scale, field.offset = choice(SCALES), choice(("", "", "-40", "0.5"))
        field.unit = choice(("", "V", "\u00b5s"))
    if random() < 0.4:
        field.names = {getrandbits(field.width): f"name {i}" for i in range(randrange(4))}
    return field


def random_table(widths):
    """The lines, and {register: (its own row or None, its fields)}."""
    lines, entries = [], {}
    for register, width in widths.items():
        row = Field("(whole)", 0, width, choice("Xu"), choice(("", "the register"))) if random() < 0.6 else None
        fields = [random_field(f"f{i}", width) for i in range(choice((0, 1, 3, 6)))]
        entries[register] = row, fields
        for field in [row] * (row is not None) + fields:
            columns = field.columns(register)
            if field is row:
                columns[1], columns[2] = "", choice(("", "0"))
            line = ",".join(columns)
            lines.append(choice((line, line.rstrip(","))))
    return lines, entries


def random_line(name, width, value, has_row):
    digits = f"{value:0{choice((1, (width + 3) // 4))}{choice('xX')}}"
    cut = randrange(len(digits))
    digits = choice(("", "0x")) + digits[:cut] + (choice(("", "_", " ")) if cut else "") + digits[cut:]
    return name + choice((f" {integer(width)} ", *((": ", " = ", ":", "=", " : ") if has_row else ()))) + digits


def random_capture(widths, entries):
    """The lines, and [(register, name as first written, number, value)...]."""
    lines, scans, names, counts = [], [], {}, dict.fromkeys(widths, 0)
    values = {register: getrandbits(width) for register, width in widths.items()}
    for register in [*widths, *(choice(list(widths)) for _ in range(400))]:
        counts[register] += 1
        values[register] ^= choice((0, 1, 1, 1)) << randrange(widths[register])
        name = choice((register, register.lower()))
        lines.append(random_line(name, widths[register], values[register], entries[register][0]))
        scans.append((register, names.setdefault(register, name), counts[register], values[register]))
    return lines, scans


def gaps(fields, width):
    """The runs of bits that no field covers, the highest first."""
    covered = [any(field.lowest <= bit < field.lowest + field.width for field in fields) for bit in range(width)]
    runs = [list(bits) for is_covered, bits in itertools.groupby(range(width), covered.__getitem__) if not is_covered]
    return [Field("", bits[0], len(bits)) for bits in reversed(runs)]


def model(widths, entries, scans, changes):
    """The scans with their fields, as the form for lines has them."""
    named = any(field.names for _, fields in entries.values() for field in fields)
    previous, result = {}, []
    for register, name, count, value in scans:
        row, fields = entries[register]
        row = row or Field("(whole)", 0, widths[register])
        fields = fields or [row]
        before = previous.get(register) if changes else None
        items = [field.shown(value, named) for field in fields + gaps(fields, widths[register])
                 if (before is None and field.name) or field.part(value) != field.part(before or 0)]
        previous[register] = value
        if items:
            result.append({"register": name, "scan": str(count), "width": str(widths[register]),
                           "description": row.description, "fields": items})
    return result


def read(form, text, expected):
    """What a report in a form says, and what it should say. All numbers are texts."""
    as_json = lambda text: json.loads(text, parse_float=str, parse_int=str)
    if form == "jsonl":
        return [as_json(line) for line in text.split("\n")[:-1]], expected
    items = [{key: scan[key] for key in ("register", "scan")} | item for scan in expected for item in scan["fields"]]
    if form == "json":
        return as_json(text), items
    for item in items:
        item["raw"] = "".join(c if " " <= c <= "~" else "." for c in item["raw"])
    rows = [list(items[0])] + [[value or "" for value in item.values()] for item in items]
    return list(csv.reader(text.split("\r\n")[:-1], strict=True)), rows


def check(number, tool, directory):
    seed(number)
    widths = {f"REG{i}": choice(WIDTHS) for i in range(40)}
    table, entries = random_table(widths)
    capture, scans = random_capture(widths, entries)
    for name, lines in (("table", table), ("capture", capture)):
        with open(f"{directory}/{name}", "w", encoding="utf-8") as file:
            file.writelines(line + "\n" for line in lines)
    for show, form in itertools.product(("all", "changes"), ("csv", "json", "jsonl")):
        done = subprocess.run([*tool, "capture=capture", "fields=table", f"format={form}", f"show={show}"],
                              cwd=directory, stdout=subprocess.PIPE, check=True)
        actual, expected = read(form, done.stdout.decode(), model(widths, entries, scans, show == "changes"))
        for one, other in itertools.zip_longest(actual, expected):
            if one != other:
                sys.exit(f"seed {number}, {form}, {show}:\n  {one}\ninstead of\n  {other}")


def main():
    first, count, *tool = sys.argv[1:]
    for number in range(int(first), int(first) + int(count)):
        with tempfile.TemporaryDirectory() as directory:
            check(number, tool, directory)


if __name__ == "__main__":
    main()
