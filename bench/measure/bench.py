#!/usr/bin/env python3
"""Measures the release programs. scripts/bench builds them and calls this.

Usage: bench.py [--short] [--rounds N] [--folder FOLDER] [WORD ...]
"""

import argparse
import pathlib
import platform
import subprocess

import against_floor
import cost
import crew_memory
import memory
import workers
from programs import ROOT


def _arguments():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=(
        "Measures what the program costs against the floor of what its design demands."))
    parser.add_argument("--short", action="store_true",
                        help="a hundredth of the work in one round, to see that all of it runs")
    parser.add_argument("--rounds", type=int, default=7, help="how often each pair runs (7)")
    parser.add_argument("--folder", type=pathlib.Path, default=ROOT / "build/bench",
                        help="where the exports go (build/bench)")
    parser.add_argument("words", nargs="*", metavar="WORD",
                        help="only the rows whose names have one of these, 'memory', "
                             "'memory-of-workers', 'cost', 'workers'")
    return parser.parse_args()


def _processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.partition(":")[2].strip()
    return platform.machine()


def _commit():
    told = subprocess.run(["git", "describe", "--always", "--dirty"], cwd=ROOT,
                          capture_output=True, text=True)
    return told.stdout.strip() or "unknown"


def _wine():
    return subprocess.run([ROOT / "scripts/run-windows", "--version"], capture_output=True,
                          text=True).stdout.strip()


def main():
    options = _arguments()
    folder = options.folder.resolve()
    folder.mkdir(parents=True, exist_ok=True)
    part, rounds = (100, 1) if options.short else (1, options.rounds)
    print(f"Commit {_commit()}; {_processor()}, {len(platform.os.sched_getaffinity(0))} cores; "
          f"{_wine()}; median (least to most) of {rounds} rounds.\n", flush=True)
    words = set(options.words)
    rows = words - {"memory", "memory-of-workers", "cost", "workers"}
    if not words or rows:
        against_floor.measure(folder, part, rounds, rows)
    if not words or "memory" in words:
        memory.measure(folder, 10000 // part, 1000000 // part)
    if not words or "memory-of-workers" in words:
        crew_memory.measure(folder, 10000 // part, 100000 // part)
    if not words or "cost" in words:
        cost.measure(folder, 10000 // part, 100000 // part, 1000 // part, rounds)
    if not words or "workers" in words:
        # A round takes minutes; what is waited for scatters little.
        workers.measure(folder, 4000 // part, 20, min(rounds, 3))
        workers.measure(folder, 4000 // part, 0, rounds)


main()
