#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes tables from the results of the benchmark programs.

usage: report.py GOALS PEERS RESULT.json... [--plain RESULT.json...]

Prints the peers with their versions, which the file PEERS lists, and one table per family. A row has the work,
the size, the library's time, the time of each peer, and the ratios of the library's time to the best peer's and
to the limit. With --plain it also has the time of the library without compiler extensions. A time is the median,
over the repetitions, of the processor time of one operation. If a goal names peers, the row also misses it if any
other peer is faster. The exit status is 1 if a row misses its goal.
"""
import json
import statistics
import sys

OURS = "KelUtil"
LIMIT = "limit"
PLAIN = "plain"


def read_goals(path):
    goals = {}
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            if line.strip() and not line.startswith("#"):
                family, work, sizes, goal, *may_lead = (part.strip() for part in line.split("|"))
                for size in sizes.split(","):
                    goals[family, work, size.strip()] = float(goal), may_lead
    return goals


def read_results(paths):
    """Returns {family: {(work, size): {contender: [nanoseconds...]}}}, in the order of the files."""
    families = {}
    for path in paths:
        with open(path, encoding="utf-8") as text:
            runs = sorted(json.load(text)["benchmarks"], key=lambda run: run["family_index"])
        for run in runs:
            if run.get("run_type") == "aggregate":
                continue
            family, work, size, contender = run["run_name"].split("/")[:4]
            row = families.setdefault(family, {}).setdefault((work, size), {})
            figures = row.setdefault(contender, [])
            if not run.get("error_occurred"):
                manual = run["run_name"].endswith("/manual_time")
                figures.append(run["real_time" if manual else "cpu_time"] / run["items"])
    return families


def add_plain(families, plain):
    """Adds the times of the plain library to the rows, as those of the contender PLAIN."""
    for family, rows in plain.items():
        for key, row in rows.items():
            families[family][key][PLAIN] = row[OURS]


def duration(nanoseconds):
    for unit, scale in (("ns", 1), ("us", 1e3), ("ms", 1e6)):
        if nanoseconds < 1000 * scale or unit == "ms":
            return f"{nanoseconds / scale:.3g} {unit}"
    return ""


def table(family, rows, goals):
    contenders = list(dict.fromkeys(name for row in rows.values() for name in row))
    peers = [name for name in contenders if name not in (OURS, LIMIT, PLAIN)]
    shown = [PLAIN, *peers] if PLAIN in contenders else peers
    lines = [["work", "size", OURS, *shown, "limit", "to best", "to limit", "goal", ""]]
    missed = []
    for (work, size), row in rows.items():
        median = {name: statistics.median(runs) for name, runs in row.items() if runs}
        best = min((median[name] for name in peers if name in median), default=None)
        ours = median[OURS]
        goal, may_lead = goals.get((family, work, size), goals.get((family, work, "*"), (None, [])))
        ratio = ours / best if best else None
        faster = [name for name in peers if name in median and median[name] < ours]
        others_behind = not may_lead or set(faster) <= set(may_lead)
        verdict = ""
        if goal is not None:
            verdict = "no peer" if ratio is None else "ok" if ratio <= goal and others_behind else "MISSED"
        if verdict == "MISSED":
            missed.append(f"{family}, {work}, {size}: {ratio:.2f} instead of {goal}" +
                          ("" if others_behind else f", and behind {', '.join(faster)}"))
        lines.append([
            work, size, duration(ours),
            *(("-" if name not in row else duration(median[name]) if name in median else "missing")
              for name in shown),
            duration(median[LIMIT]) if LIMIT in median else "-",
            f"{ratio:.2f}" if ratio else "-",
            f"{ours / median[LIMIT]:.2f}" if LIMIT in median else "-",
            "-" if goal is None else f"{goal:g}", verdict])
    widths = [max(len(line[i]) for line in lines) for i in range(len(lines[0]))]
    print(f"\n## {family}\n")
    for number, line in enumerate(lines):
        cells = [text.ljust(width) if i < 2 else text.rjust(width)
                 for i, (text, width) in enumerate(zip(line, widths))]
        print("| " + " | ".join(cells) + " |")
        if number == 0:
            print("|" + "|".join("-" * (width + 2) for width in widths) + "|")
    return missed


def main():
    goals = read_goals(sys.argv[1])
    with open(sys.argv[2], encoding="utf-8") as peers:
        print("Peers: " + ", ".join(peers.read().splitlines()))
    missed = []
    results = sys.argv[3:]
    split = results.index("--plain") if "--plain" in results else len(results)
    families = read_results(results[:split])
    add_plain(families, read_results(results[split + 1:]))
    for family, rows in families.items():
        missed += table(family, rows, goals)
    if missed:
        print("\nGoals missed:")
        for line in missed:
            print("  " + line)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
