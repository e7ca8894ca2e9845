#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the report tool on pseudo-terminals, and on pipes that live.

usage: terminal.py TOOL
"""
import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

TABLE = "fields=good.csv"


def read_all(descriptor):
    text = b""
    try:
        while piece := os.read(descriptor, 65536):
            text += piece
    except OSError:  # how Linux ends a terminal
        pass
    return text.replace(b"\r\n", b"\n").decode()


def report(**environment):
    """The report of good.cap as a terminal gets it."""
    controller, terminal = pty.openpty()
    base = {key: value for key, value in os.environ.items() if key not in ("NO_COLOR", "TERM")}
    with subprocess.Popen([sys.argv[1], "capture=good.cap", TABLE], stdout=terminal,
                          env=base | environment):
        os.close(terminal)
        return read_all(controller)


def progress():
    """What standard error shows of a capture that does not end before the progress is there."""
    controller, terminal = pty.openpty()
    shown = b""
    with tempfile.TemporaryFile() as report, \
            subprocess.Popen([sys.argv[1], "capture=-", TABLE, "scan=1..2"],
                             stdin=subprocess.PIPE, stdout=report, stderr=terminal) as tool:
        os.close(terminal)
        os.set_blocking(controller, False)
        while b"read" not in shown:
            tool.stdin.write(b"COUNT 8 2a\n" * 1000)
            try:
                shown += os.read(controller, 4096)
            except BlockingIOError:
                pass
        tool.stdin.close()
        tool.wait()
        report.seek(0)
        piped = report.read().decode()
    os.set_blocking(controller, True)
    return shown.decode() + read_all(controller), piped


def share():
    """What standard error shows of a file whose report nobody reads for two seconds."""
    controller, terminal = pty.openpty()
    with tempfile.NamedTemporaryFile() as capture:
        capture.write(b"COUNT 8 2a\n" * 100000)
        capture.flush()
        with subprocess.Popen([sys.argv[1], "capture=" + capture.name, TABLE],
                              stdout=subprocess.PIPE, stderr=terminal) as tool:
            os.close(terminal)
            time.sleep(2)  # the share is shown after one
            tool.stdout.read()
    return read_all(controller)


def live():
    """The first object of a capture whose second line is not yet complete."""
    with subprocess.Popen([sys.argv[1], "capture=-", TABLE, "format=jsonl"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as tool:
        tool.stdin.write(b"COUNT 8 2a\nCOUNT 8")
        tool.stdin.flush()
        ready, _, _ = select.select([tool.stdout], [], [], 60)
        line = tool.stdout.readline().decode() if ready else ""
        tool.stdin.close()
    return line


def expect(what, isRight):
    if not isRight:
        sys.exit(f"{what} is not as expected")


def main():
    plain = report(TERM="dumb")
    header, rest = plain.split("\n", 1)
    expect("a dumb terminal", header.startswith("REGISTER") and "\x1b" not in plain)
    expect("NO_COLOR", report(TERM="xterm", NO_COLOR="1") == plain)
    expect("an empty NO_COLOR", report(TERM="xterm", NO_COLOR="") == f"\x1b[1m{header}\x1b[0m\n{rest}")
    shown, piped = progress()
    expect("the progress", "MB read\r" in shown and shown.endswith(" \r") and "read" not in piped)
    expect("a scan of a live pipe", live().endswith('}]}\n'))
    first = re.match(r"(\d+) % read\r", share())
    expect("the share of the file", first and 0 < int(first[1]) < 50)


if __name__ == "__main__":
    main()
