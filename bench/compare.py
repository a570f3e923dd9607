#!/usr/bin/env python3
"""Runs Google Benchmark programs and prints each figure next to its baseline.

A benchmark names its baseline in its label, "baseline=<benchmark name>"; the
baseline is the run of that benchmark with the same arguments in the same
process. With --benchmark_repetitions=N the fastest repetition of each counts,
since a shared machine only ever adds time.
Usage: compare.py BINARY [BINARY...] [-- extra benchmark flags]
"""
import json
import subprocess
import sys


def run(binary, extra):
    out = subprocess.run([binary, "--benchmark_format=json", *extra],
                         check=True, capture_output=True, text=True).stdout
    return json.loads(out)["benchmarks"]


def split_name(name):
    base, _, args = name.partition("/")
    return base, args


def main(argv):
    extra = []
    if "--" in argv:
        cut = argv.index("--")
        argv, extra = argv[:cut], argv[cut + 1:]
    if not argv:
        print(__doc__, file=sys.stderr)
        return 2
    for binary in argv:
        by_name = {}
        for b in run(binary, extra):
            if b.get("run_type") == "aggregate":
                continue
            kept = by_name.get(b["name"])
            if kept is None or b["real_time"] < kept["real_time"]:
                by_name[b["name"]] = b
        results = list(by_name.values())
        print(f"{binary}")
        print(f"  {'benchmark':<44} {'time':>12} {'baseline':>12} {'ratio':>7} {'peak MiB':>9}")
        for b in results:
            base, args = split_name(b["name"])
            label = b.get("label", "")
            baseline = None
            if label.startswith("baseline="):
                key = label[len("baseline="):] + ("/" + args if args else "")
                baseline = by_name.get(key)
            unit = b.get("time_unit", "ns")
            time = f"{b['real_time']:.3f} {unit}"
            peak = b.get("peak_mib")
            peak_text = f"{peak:.1f}" if peak is not None else ""
            if baseline is None:
                print(f"  {b['name']:<44} {time:>12} {'':>12} {'':>7} {peak_text:>9}")
                continue
            ratio = b["real_time"] / baseline["real_time"]
            btime = f"{baseline['real_time']:.3f} {baseline.get('time_unit', 'ns')}"
            print(f"  {b['name']:<44} {time:>12} {btime:>12} {ratio:>6.2f}x {peak_text:>9}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
