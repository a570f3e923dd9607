#!/usr/bin/env python3
"""Export of a dataset file to an SQLite table: streamed against held, and the
veld tool against the lxml + pandas script a user would otherwise write.

  file_export_compare.py --build BUILD_DIR [--rows 100000 1000000 10000000]
                         [--work DIR] [--repeat N] [--held-max ROWS]
                         [--process-max ROWS]

For each size a dataset file is generated (bench_dataset_gen: one data
element, rows of 8 cols, about 380 bytes a row) in a scratch directory, which
is deleted afterwards. Then, each in a process of its own with a fresh
database (bench_file_export_phase), so that peak memory (VmHWM) is the
export's alone:

  streamed  ExportFileToMDBTable
  held      ParseFile + SaveDataToMDBTable, up to --held-max rows (default
            1M: the held document of 10M rows would need about 54 GiB)

and up to --process-max rows (default 100k) the whole processes side by side:
`veld datasets export` against bench/pandas_export.py run by Debian's python3
(scripts/setup.sh --bench installs lxml and pandas for it). Wall time counts;
each run is made N times (default 3, once from 10M rows on) and the fastest
counts, since a shared machine only ever adds time.
"""
import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time

DATA_ID = "5E8F2A4C9B7D4E1FA3C6B0D2E4F6A8C0"
SCHEMA = ("CREATE TABLE items (code VARCHAR(20), kind VARCHAR(4), title TEXT, qty INTEGER, "
          "price NUMERIC(10,2), date DATE, flag BOOLEAN, note TEXT)")


def best_of(repeat, run):
    best = None
    for _ in range(repeat):
        result = run()
        if result is None:
            return None
        if best is None or result[0] < best[0]:
            best = result
    return best


def phase(binary, name, path, database):
    """(wall seconds, rows, peak MiB) of one export phase, or None."""
    out = subprocess.run([binary, name, path, database], capture_output=True, text=True)
    if out.returncode != 0:
        sys.stderr.write(out.stderr)
        return None
    _, wall, _, rows, peak = out.stdout.split()
    return float(wall), int(rows), int(peak) / 1024.0


def process(command, database):
    """(wall seconds, rows, peak MiB) of a whole process exporting into a fresh
    table, or None."""
    if os.path.exists(database):
        os.remove(database)
    subprocess.run(["sqlite3", database, SCHEMA], check=True)
    start = time.monotonic()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    _, status, usage = os.wait4(child.pid, 0)
    wall = time.monotonic() - start
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.stderr.write(child.stderr.read().decode())
        return None
    rows = subprocess.run(["sqlite3", database, "SELECT count(*) FROM items"], check=True,
                          capture_output=True, text=True).stdout.strip()
    return wall, int(rows), usage.ru_maxrss / 1024.0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--rows", type=int, nargs="+", default=[100000, 1000000, 10000000])
    parser.add_argument("--work", default=None)
    parser.add_argument("--repeat", type=int, default=3)
    parser.add_argument("--held-max", type=int, default=1000000)
    parser.add_argument("--process-max", type=int, default=100000)
    args = parser.parse_args()
    build = os.path.abspath(args.build)
    gen = os.path.join(build, "bench", "bench_dataset_gen")
    phase_bin = os.path.join(build, "bench", "bench_file_export_phase")
    veld = os.path.join(build, "tools", "veld", "veld")
    script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "pandas_export.py")
    work = tempfile.mkdtemp(prefix="veld-file-export-", dir=args.work or build)
    failed = False
    try:
        print("%9s %8s | %-8s %9s %9s | %-8s %9s %9s | %6s %6s" %
              ("rows", "file MiB", "ours", "seconds", "peak MiB", "baseline", "seconds",
               "peak MiB", "time x", "mem x"))
        for rows in args.rows:
            path = os.path.join(work, "dataset_%d.xml" % rows)
            database = os.path.join(work, "export.db")
            subprocess.run([gen, path, str(rows)], check=True)
            size = os.path.getsize(path) / 1048576.0
            repeat = args.repeat if rows < 10000000 else 1

            def line(ours, mine, base, theirs):
                nonlocal failed
                text = "%9d %8.0f | %-8s " % (rows, size, ours)
                if mine is None or mine[1] != rows:
                    failed = True
                    return text + "failed"
                text += "%9.3f %9.1f | %-8s " % (mine[0], mine[2], base)
                if theirs is None:
                    return text + "-"
                if theirs[1] != rows:
                    failed = True
                    return text + "failed"
                return text + "%9.3f %9.1f | %6.2f %6.2f" % (theirs[0], theirs[2],
                                                             mine[0] / theirs[0],
                                                             mine[2] / theirs[2])

            streamed = best_of(repeat, lambda: phase(phase_bin, "streamed", path, database))
            held = None
            if rows <= args.held_max:
                held = best_of(repeat, lambda: phase(phase_bin, "held", path, database))
            print(line("streamed", streamed, "held", held))
            sys.stdout.flush()
            if rows <= args.process_max:
                tool = best_of(repeat, lambda: process(
                    [veld, "datasets", "export", path, DATA_ID, database, "items"], database))
                pandas = best_of(repeat, lambda: process(
                    ["/usr/bin/python3", script, path, DATA_ID, database, "items"], database))
                print(line("veld", tool, "pandas", pandas))
                sys.stdout.flush()
            os.remove(path)
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
