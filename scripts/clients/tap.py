#!/usr/bin/env python3
"""Stands between a program and the engine, whose name is in CLIENT_ENGINE, and writes what they say
to a file of its own in the directory CLIENT_LOGS: "> " to the engine, "< " from it."""

import os
import signal
import subprocess
import sys
import threading

log = open(f"{os.environ['CLIENT_LOGS']}/{os.getpid()}.log", "w", buffering=1, encoding="utf-8")
engine = subprocess.Popen([os.environ["CLIENT_ENGINE"], *sys.argv[1:]], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE)
for request in (signal.SIGINT, signal.SIGTERM):
    signal.signal(request, lambda number, frame: engine.send_signal(number))


def copy(source, target, mark):
    for line in iter(source.readline, b""):
        log.write(mark + line.decode(errors="replace").rstrip("\n") + "\n")
        target.write(line)
        target.flush()
    target.close()


threading.Thread(target=copy, args=(sys.stdin.buffer, engine.stdin, "> "), daemon=True).start()
copy(engine.stdout, sys.stdout.buffer, "< ")
os._exit(0)
