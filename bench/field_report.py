#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the report tool with `wc -l` and `xxd` on the same captures of 100 MB.

usage: field_report.py TOOL DIRECTORY

Makes the captures in DIRECTORY: scans of three registers of 32 bits, and 400 scans of four registers
of 1 Mbit. Prints the processor time and the peak memory of each program in the faster of two runs, and
the ratio of its time to that of xxd. The exit status is 1 if the tool takes more than ten times as long as xxd.
"""
import os
import random
import subprocess
import sys

GOAL = 10  # times xxd
NARROW_TABLE = """ID,version,28,4,X,,,,
ID,part,12,16,X,,,,
ID,maker,1,11,X,,,,
ID,marker,0,1,b,,,,
STATUS,voltage,16,16,u,1e-4,,V,
STATUS,flags,0,16,b,,,,
COUNT,count,0,32,u,,,,
"""


def write_narrow(file):
    values = random.Random(1)
    for _ in range(100_000_000 // 52):  # three lines have 52 bytes
        for name in ("ID", "STATUS", "COUNT"):
            file.write(f"{name} 32 {values.getrandbits(32):08X}\n")


def write_wide(file):
    values = random.Random(1)
    for number in range(400):
        file.write(f"WIDE{number % 4} 1048576 {values.getrandbits(1 << 20):0262144X}\n")


def wide_table():
    """Returns a table with 64 fields in each register, of 1 to 4,096 bits and in every radix."""
    widths, radices = (1, 12, 32, 64, 128, 1000, 4096), "xubdo"
    return "".join(f"WIDE{register},f{i},{i * 16384 + 3},{widths[i % 7]},{radices[i % 5]},,,,\n"
                   for register in range(4) for i in range(64))


def measure(command):
    """Returns the processor time in seconds and the peak memory in KiB of the faster of two runs."""
    runs = []
    for _ in range(2):
        # The peak memory of a direct child would include that of this interpreter, which forks it.
        done = subprocess.run(["time", "-f", "%U %S %M", *command], stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, text=True, check=True)
        user, system, memory = done.stderr.split()[-3:]
        runs.append((float(user) + float(system), int(memory)))
    return min(runs)


def main():
    tool, directory = sys.argv[1:]
    print("\n## report tool\n\n| capture | program | time | memory | to xxd |\n|---|---|---|---|---|")
    missed = False
    for name, write, table in (("32 bits", write_narrow, NARROW_TABLE),
                               ("1 Mbit", write_wide, wide_table())):
        capture, fields = os.path.join(directory, "report.cap"), os.path.join(directory, "report.csv")
        with open(capture, "w", encoding="ascii") as file:
            write(file)
        with open(fields, "w", encoding="ascii") as file:
            file.write(table)
        xxd, xxd_memory = measure(["xxd", capture])
        rows = [("wc -l", *measure(["wc", "-l", capture])), ("xxd", xxd, xxd_memory)]
        for form in ("text", "csv", "json"):
            rows.append((form, *measure([tool, f"capture={capture}", f"fields={fields}",
                                         f"format={form}"])))
            missed |= rows[-1][1] > GOAL * xxd
        for program, time, memory in rows:
            print(f"| {name} | {program} | {time:.2f} s | {memory / 1024:.1f} MiB | {time / xxd:.2f} |")
        os.remove(capture)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
