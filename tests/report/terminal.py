#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the report tool on a pseudo-terminal, and on a pipe that stays open while it runs.

usage: terminal.py TOOL
"""
import os
import pty
import sys
from subprocess import PIPE, Popen


def report(**environment):
    """Returns the report that the tool prints on a terminal."""
    controller, terminal = pty.openpty()
    base = {key: value for key, value in os.environ.items() if key not in ("NO_COLOR", "TERM")}
    tool = Popen([sys.argv[1], "capture=good.cap", "fields=good.csv"], env=base | environment, stdout=terminal)
    os.close(terminal)
    text = b""
    try:
        while piece := os.read(controller, 65536):
            text += piece
    except OSError:  # Linux reports the end of a terminal as an error
        tool.wait()
    return text.replace(b"\r\n", b"\n").decode()


def expect(what, is_right):
    if not is_right:
        sys.exit(f"{what} is not as expected")


plain = report(TERM="dumb")
header, rest = plain.split("\n", 1)
expect("a dumb terminal", header.startswith("REGISTER") and "\x1b" not in plain)
expect("NO_COLOR", report(TERM="xterm", NO_COLOR="1") == plain)
expect("an empty NO_COLOR", report(TERM="xterm", NO_COLOR="") == f"\x1b[1m{header}\x1b[0m\n{rest}")

# The first scan must be reported while the second line of the capture is still incomplete.
tool = Popen(["timeout", "60", sys.argv[1], "capture=-", "fields=good.csv", "format=jsonl"], stdin=PIPE, stdout=PIPE)
tool.stdin.write(b"COUNT 8 2a\nCOUNT 8")
tool.stdin.flush()
expect("the first scan", tool.stdout.readline().endswith(b"}]}\n"))
tool.stdin.close()
