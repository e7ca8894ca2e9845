#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares reports with a model of what they have to say.

usage: model.py INPUT REPORT

Reads the capture INPUT.cap and the table INPUT.csv, and the reports on them, REPORT.csv and
REPORT.json, with Python's own readers. Scaled values are those of exact decimal arithmetic.
"""
import csv
import decimal
import json
import sys

KEYS = ["register", "scan", "field", "lowest", "width", "raw", "value", "unit", "description"]
decimal.getcontext().prec = 100


def read(path):
    """The text of an input: what is not UTF-8 becomes U+FFFD."""
    with open(path, "rb") as file:
        return file.read().decode("utf-8-sig", "replace")


def lines(path):
    return [line for line in read(path).replace("\r\n", "\n").split("\n")
            if line.strip() and not line.lstrip().startswith("#")]


def fields(path):
    """{register in upper case: [columns of a field...]}"""
    table = {}
    texts = lines(path)
    for text, row in zip(texts, csv.reader(texts, skipinitialspace=True)):
        # Blanks around columns do not count, those within quotes do.
        isQuoted = lambda column: '"' + column.replace('"', '""') + '"' in text
        columns = [column if isQuoted(column) else column.strip() for column in row]
        table.setdefault(columns[0].upper(), []).append(columns[1:])
    return table


def scans(path):
    """(register as it was named first, number of the scan, width, value)..."""
    names, counts = {}, {}
    for line in lines(path):
        name, width, *digits = line.partition("#")[0].split()
        key = name.upper()
        names.setdefault(key, name)
        counts[key] = counts.get(key, 0) + 1
        yield names[key], counts[key], int(width), int("".join(digits).replace("_", ""), 16)


def decimals(text):
    return max(0, -decimal.Decimal(text or "0").as_tuple().exponent)


def raw_text(value, width, radix):
    if radix in "bB":
        return f"0b{value:0{width}b}"
    if radix in "oO":
        return f"0o{value:0{(width + 2) // 3}o}"
    if radix in "xX":
        return f"0x{value:0{(width + 3) // 4}{radix}}"
    if radix in "sS":
        characters = value.to_bytes((width + 7) // 8, "big")
        return characters.lstrip(b"\0").rjust(len(characters)).decode("latin-1")
    return str(value - (value >> (width - 1) << width) if radix in "dDiI" else value)


def model(name):
    table = fields(name + ".csv")
    for register, scan, width, value in scans(name + ".cap"):
        whole = [["(whole)", "0", str(width), "X", "", "", "", ""]]
        for columns in table.get(register.upper(), whole):
            field, lowest, size, radix, scale, offset, unit, description = columns
            lowest, size = int(lowest), int(size)
            part = value >> lowest & (1 << size) - 1
            scaled = None
            if scale:
                number = int(raw_text(part, size, "d" if radix in "dDiI" else "u"))
                exact = number * decimal.Decimal(scale) + decimal.Decimal(offset or "0")
                scaled = f"{exact:.{max(decimals(scale), decimals(offset))}f}"
            yield dict(zip(KEYS, [register, scan, field, lowest, size, raw_text(part, size, radix),
                                  scaled, unit, description]))


def printable(text):
    return "".join(c if " " <= c <= "~" else "." for c in text)


def compare(what, actual, expected):
    for number, (a, e) in enumerate(zip(actual, expected)):
        if a != e:
            sys.exit(f"{what}, item {number}:\n  {a}\ninstead of\n  {e}")
    if len(actual) != len(expected):
        sys.exit(f"{what}: {len(actual)} items instead of {len(expected)}")


def main():
    expected = list(model(sys.argv[1]))
    with open(sys.argv[2] + ".json", encoding="utf-8") as file:
        compare("JSON", json.load(file, parse_float=str, parse_int=str), [
            {key: value if value is None else str(value) for key, value in item.items()}
            for item in expected])
    with open(sys.argv[2] + ".csv", "rb") as file:
        text = file.read().decode("utf-8")
    rows = list(csv.reader(text.split("\r\n")[:-1], strict=True))
    compare("CSV", rows, [KEYS] + [
        [printable(value) if key == "raw" else "" if value is None else str(value)
         for key, value in item.items()] for item in expected])


if __name__ == "__main__":
    main()
