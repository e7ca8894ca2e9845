#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares reports on random tables and captures, some of whose lines are faults, with the model.

usage: random_reports.py SEED COUNT TOOL...

Each of the COUNT tables and captures is reported in every form, whole and with show=changes.
"""
import random
import re
import subprocess
import sys
import tempfile

import model

WIDTHS = (1, 2, 7, 8, 9, 16, 31, 32, 33, 63, 64, 65, 100, 128, 129, 200)
SCALES = ("", "", "", "0.25", "1e-3", "100/255", "3.3/4096", "-1000/3", "0.47/47", "2")
MAX_SCALED_WIDTH = 32  # every scaled value is exact in the decimals that it has


class Generator:
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.registers = {f"REG{number}": self.random.choice(WIDTHS) for number in range(40)}
        self.with_row = {name for name in self.registers if self.random.random() < 0.6}

    def chance(self, share):
        return self.random.random() < share

    def number(self, value):
        return self.random.choice((f"{value}", f"0x{value:X}", f"0X{value:x}"))

    def names(self, width, radix):
        codes = {self.random.getrandbits(width) for _ in range(self.random.randrange(4))}
        entries = []
        for code in codes:
            signed = code - (code >> (width - 1) << width) if radix in "dDiI" else code
            text = self.random.choice((f"{signed}", f"0x{code:x}", f"0x00{code:X}"))
            entries.append(f"{text}={'' if self.chance(0.5) else ' '}name {code % 97}")
        return ";".join(entries)

    def field(self, register, name):
        """The columns of a good field."""
        width = self.registers[register]
        lowest = self.random.randrange(width)
        size = self.random.randint(1, width - lowest)
        radix = self.random.choice("bBoOxXuUdDiIsS")
        scale, offset, unit = "", "", ""
        if size <= MAX_SCALED_WIDTH:
            scale = self.random.choice(SCALES)
            offset = self.random.choice(("", "", "-40", "0.5"))
            unit = self.random.choice(("", "V", "\u00b5s"))
        return [register, name, self.number(lowest), self.number(size), radix, scale, offset, unit,
                self.random.choice(("", "plain", '"with, comma"')),
                self.names(size, radix) if self.chance(0.4) else ""]

    def faulty_field(self, register):
        columns = self.field(register, "faulty")
        width = self.registers[register]
        size = model.integer(columns[3])
        wrong = [(3, "0"), (4, "q"), (5, "1/0"), (5, "1/"), (5, "1/2/3"), (9, "1"), (9, "=a"), (9, "1="),
                 (9, "0=a;"), (9, f"{1 << size}=a"), (9, f"{-(1 << size)}=a"), (9, "0=a;0x00=b"),
                 (9, "0xg=a"), (9, "0=a,b"), (1, "again")]
        if register in self.with_row:
            wrong += [(2, f"{width}"), (1, "")]  # beyond the register, and a second row
            columns[2] = "0" if self.chance(0.5) else columns[2]
        column, text = self.random.choice(wrong)
        columns[column] = text
        return columns

    def table(self):
        """[(line, whether it is a fault)...]"""
        lines = []
        for register, width in self.registers.items():
            if register in self.with_row:
                description = self.random.choice(("", "the register"))
                lines.append(([register, "", self.random.choice(("", "0")), self.number(width),
                               self.random.choice(("", "X", "u")), "", "", "", description, ""], False))
            for number in range(self.random.choice((0, 1, 3, 6))):
                lines.append((self.field(register, "again" if number == 0 else f"f{number}"), False))
                if self.chance(0.3):
                    lines.append((self.faulty_field(register), True))
        return [(self.joined(columns), fault) for columns, fault in lines]

    def joined(self, columns):
        line = ",".join(columns)
        return line.rstrip(",") if self.chance(0.5) else line

    def digits(self, value, width):
        text = f"{value:0{self.random.choice((1, (width + 3) // 4))}{self.random.choice('xX')}}"
        cut = self.random.randrange(1, len(text)) if len(text) > 1 else 0
        text = text[:cut] + self.random.choice(("", "_", " ") if cut else ("",)) + text[cut:]
        return self.random.choice(("", "0x")) + text

    def good_line(self, register, value):
        width = self.registers[register]
        forms = [f"{register} {self.number(width)} "]
        if register in self.with_row:
            forms += [f"{register}: ", f"{register} = ", f"{register}:", f"{register}=",
                      f"{register.lower()} : "]
        return self.random.choice(forms) + self.digits(value, width)

    def faulty_line(self, register):
        width = self.registers[register]
        return self.random.choice((
            f"{register} {width}", f"{register} {width} 0g", f"{register} {width} {1 << width:x}",
            f"{register} {width + 1} 0", f"{register} {width}x 0", f"{register} 0 0", f"{register}: 0y",
            f"{register} = ", f"{register}={1 << width + 3:x}", f"{register} 1048577 0"))

    def capture(self):
        lines = []
        values = {register: self.random.getrandbits(width) for register, width in self.registers.items()}
        for register in self.registers:
            lines.append((self.good_line(register, values[register]), False))
        for _ in range(400):
            register = self.random.choice(list(self.registers))
            if self.chance(0.1):
                lines.append((self.faulty_line(register), True))
                continue
            if self.chance(0.8):
                values[register] ^= 1 << self.random.randrange(self.registers[register])
            lines.append((self.good_line(register, values[register]), False))
        return lines


def write(path, lines):
    """Writes the lines. Returns the numbers of those that are faults."""
    with open(path, "w", encoding="utf-8") as file:
        file.write("".join(line + "\n" for line, _ in lines))
    return {number for number, (_, fault) in enumerate(lines, 1) if fault}


def places(errors):
    """{file: numbers of the lines with a fault}"""
    found = {"capture": set(), "table": set()}
    for file, number in re.findall(r"^(capture|table):(\d+): .+$", errors, re.MULTILINE):
        found[file].add(int(number))
    return found


def check(seed, tool, directory):
    generator = Generator(seed)
    capture, table = directory + "/capture", directory + "/table"
    faults = {"table": write(table, generator.table()), "capture": write(capture, generator.capture())}
    for show in ("all", "changes"):
        expected = model.model(capture, table, show == "changes", faults["capture"], faults["table"])
        for form in ("csv", "json", "jsonl"):
            done = subprocess.run([*tool, "capture=capture", "fields=table", "format=" + form,
                                   "show=" + show], cwd=directory, capture_output=True, check=False)
            found = places(done.stderr.decode())
            if found != faults:
                sys.exit(f"seed {seed}: the faults are {found}\ninstead of\n  {faults}")
            model.check(expected, form, done.stdout)


def main():
    seed, count, *tool = sys.argv[1:]
    for number in range(int(count)):
        with tempfile.TemporaryDirectory() as directory:
            check(int(seed) + number, tool, directory)


if __name__ == "__main__":
    main()
