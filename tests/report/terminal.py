#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the report tool on pseudo-terminals, and on pipes that stay open while it runs.

usage: terminal.py TOOL
"""
import os
import pty
import re
import sys
import tempfile
import time
from subprocess import PIPE, Popen


def start(stream, *arguments, environment=(), **streams):
    """Starts the tool with STREAM on a terminal. Returns the tool and the other end of the terminal."""
    controller, terminal = pty.openpty()
    base = {key: value for key, value in os.environ.items() if key not in ("NO_COLOR", "TERM")}
    tool = Popen([sys.argv[1], *arguments, "fields=good.csv"], env=base | dict(environment),
                 **{stream: terminal}, **streams)
    os.close(terminal)
    return tool, controller


def read_until(mark, terminal):
    text = b""
    try:
        while mark not in text and (piece := os.read(terminal, 65536)):
            text += piece
    except OSError:  # how Linux ends a terminal
        pass
    return text.replace(b"\r\n", b"\n").decode()


def report(**environment):
    return read_until(b"\0", start("stdout", "capture=good.cap", environment=environment)[1])


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

# The capture ends only after the progress has been shown; its last line may be cut. Then the progress is erased.
with Popen(["yes", "COUNT 8 2a"], stdout=PIPE) as scans:
    tool, terminal = start("stderr", "capture=-", "scan=1..2", stdin=scans.stdout, stdout=PIPE)
    shown = read_until(b"read", terminal)
    scans.terminate()
shown += read_until(b"\0", terminal)
expect("the progress", re.search(r"MB read\r +\r", shown) and b"read" not in tool.stdout.read())

# Nobody reads the report for two seconds. After one second, the tool shows how much of the file it has read.
with tempfile.NamedTemporaryFile() as capture:
    capture.write(b"COUNT 8 2a\n" * 100000)
    capture.flush()
    tool, terminal = start("stderr", "capture=" + capture.name, stdout=PIPE)
    time.sleep(2)
    tool.stdout.read()
    share = re.match(r"(\d+) % read\r", read_until(b"\0", terminal))
    expect("the share of the file", share and 0 < int(share[1]) < 50)
