#!/usr/bin/env python3
"""Runs the dataset benchmark phases and prints each figure next to its
baseline from the same run.

  dataset_compare.py --build BUILD_DIR [--rows 10000 100000 1000000] [--work DIR]
                    [--repeat N] [--phases PHASE ...]

Each phase runs in a process of its own (bench_dataset_phase), so that the
heap is settled and the peak memory (VmHWM) belongs to that phase alone. The
time ratio compares whole phases (the delete/read phases make as many calls as
their baseline; new_guids is the share of a raw parse that the IDs cost). Each
phase runs N times (default 3) and its fastest run counts, since a shared
machine only ever adds time; --phases limits the run to some of our phases
(their baselines run too).
"""
import argparse
import os
import subprocess
import sys
import tempfile

PAIRS = [
    ("parse_file", "raw_read_file"),
    ("parse", "raw_read_memory"),
    ("parse_positional", "raw_read_memory"),
    ("new_guids", "raw_read_memory"),
    ("by_index", "serialize_only"),
    ("positional", "serialize_only"),
    ("by_id", "serialize_only"),
    ("delete_read_positional", "serialize_only"),
    ("delete_read_by_id", "serialize_only"),
    ("keycol_unique", "xpath_keycol"),
    ("keycol_frequent", "xpath_keycol"),
]


def run(binary, phase, path, repeat):
    best = None
    for _ in range(repeat):
        out = subprocess.run([binary, phase, path], capture_output=True, text=True)
        if out.returncode != 0:
            return None
        name, seconds, calls, peak = out.stdout.split()
        result = (float(seconds), int(calls), int(peak) / 1024.0)
        if best is None or result[0] < best[0]:
            best = result
    return best


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--rows", type=int, nargs="+", default=[10000, 100000, 1000000])
    parser.add_argument("--work", default=None)
    parser.add_argument("--repeat", type=int, default=3)
    parser.add_argument("--phases", nargs="+", default=None)
    args = parser.parse_args()
    bench = os.path.join(args.build, "bench")
    gen = os.path.join(bench, "bench_dataset_gen")
    phase_bin = os.path.join(bench, "bench_dataset_phase")
    work = args.work or tempfile.mkdtemp(prefix="veld-dataset-bench-")
    print("%9s %-17s %10s %12s %9s | %-15s %10s %12s %9s | %6s %6s" %
          ("rows", "phase", "seconds", "us/call", "peak MiB", "baseline", "seconds",
           "us/call", "peak MiB", "time x", "mem x"))
    for rows in args.rows:
        path = os.path.join(work, "dataset_%d.xml" % rows)
        if not os.path.exists(path):
            subprocess.run([gen, path, str(rows)], check=True)
        cache = {}

        def measure(phase):
            if phase not in cache:
                cache[phase] = run(phase_bin, phase, path, args.repeat)
            return cache[phase]

        for ours, base in PAIRS:
            if args.phases and ours not in args.phases:
                continue
            mine = measure(ours)
            if mine is None:
                print("%9d %-17s failed" % (rows, ours))
                continue
            line = "%9d %-17s %10.3f %12.3f %9.1f" % (rows, ours, mine[0], mine[0] / mine[1] * 1e6,
                                                       mine[2])
            if base is not None:
                theirs = measure(base)
                line += " | %-15s %10.3f %12.3f %9.1f | %6.2f %6.2f" % (
                    base, theirs[0], theirs[0] / theirs[1] * 1e6, theirs[2],
                    mine[0] / theirs[0], mine[2] / theirs[2])
            else:
                line += " | %-15s ns/row per call: %.2f" % ("-", mine[0] / mine[1] / rows * 1e9)
            print(line)
            sys.stdout.flush()
    return 0


if __name__ == "__main__":
    sys.exit(main())
