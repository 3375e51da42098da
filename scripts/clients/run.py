#!/usr/bin/env python3
"""Plays with clients, by hand and not as a test: strict ones of our own for both protocols, and those
of the programs that people use which are installed (scid, xboard, polyglot, pychess, gnome-chess, with
xvfb and xdotool).

  scripts/clients/run.py [--engine PROGRAM] [NAME ...]

NAME is uci, xboard or programs, or one check such as uci.pairs; without a name everything is run, which
takes some minutes. Says what passed and what failed. Exit status 1 when anything failed.
"""

import argparse
import pathlib
import sys
import tempfile
import time

import programs
import uci
import xboard
from program import Failure, Skipped

ROOT = pathlib.Path(__file__).resolve().parents[2]
GROUPS = {"uci": uci, "xboard": xboard, "programs": programs}


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--engine", default=ROOT / "build/release/ombrin", type=pathlib.Path)
    parser.add_argument("names", nargs="*")
    arguments = parser.parse_args()
    if not arguments.engine.is_file():
        parser.error(f"{arguments.engine} is not there")
    failed = 0
    for group, module in GROUPS.items():
        for check in module.CHECKS:
            title = f"{group}.{check.__name__}"
            if arguments.names and not {group, title} & set(arguments.names):
                continue
            start = time.monotonic()
            with tempfile.TemporaryDirectory() as directory:
                try:
                    result = "pass  ", module.run(check, [arguments.engine.resolve()], directory)
                except Skipped as skipped:
                    result = "skip  ", skipped
                except Failure as failure:
                    failed += 1
                    result = "FAILED", failure
            seconds = time.monotonic() - start
            print(f"{result[0]}  {title:31} {seconds:5.1f} s  {result[1]}", flush=True)
    return failed > 0


if __name__ == "__main__":
    sys.exit(main())
