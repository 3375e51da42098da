#!/usr/bin/env python3
"""Plays with strict clients of both protocols, by hand and not as a test.

  scripts/clients/run.py [--engine PROGRAM] [NAME ...]

NAME is uci or xboard, or one check such as uci.pairs; without a name everything is run. Says what
passed and what failed. Exit status 1 when anything failed.
"""

import argparse
import pathlib
import sys
import tempfile
import time

import uci
import xboard
from program import Failure

ROOT = pathlib.Path(__file__).resolve().parents[2]
GROUPS = {"uci": uci, "xboard": xboard}


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--engine", default=ROOT / "build/release/ombrin", type=pathlib.Path)
    parser.add_argument("names", nargs="*")
    arguments = parser.parse_args()
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
                except Failure as failure:
                    failed += 1
                    result = "FAILED", failure
            seconds = time.monotonic() - start
            print(f"{result[0]}  {title:20} {seconds:5.1f} s  {result[1]}", flush=True)
    return failed > 0


if __name__ == "__main__":
    sys.exit(main())
