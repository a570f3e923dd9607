#!/usr/bin/env python3
"""The veld Python module against the same work in C++.

Over a 100k-row dataset file: reading every row from Python with
GetDataRowByIndex, and filling a headless list with ListView_LoadData. Each
is set against the same work in C++ (bench/python_baseline_bench, same file)
plus a plain Python loop of the same count; the target is at most 1.5 times
that sum. The best of three runs counts.

Usage: /usr/bin/python3 bench/python_bench.py [BUILD_DIR] [ROWS]
"""
import json
import os
import subprocess
import sys
import tempfile
import time

SPEC = ('<cols><col name="Name" field="name"/><col name="Qty" field="qty" type="integer"/>'
        '<col name="Day" field="day" type="date"/></cols>')


def best_of(runs, work):
    times = []
    for _ in range(runs):
        begin = time.perf_counter()
        result = work()
        times.append(time.perf_counter() - begin)
        del result  # what the work made is freed outside the timing, as in C++
    return min(times) * 1000.0


def write_dataset(path, rows):
    with open(path, "w", encoding="utf-8") as out:
        out.write('<dataset><data guid="rows">')
        for i in range(rows):
            out.write('<row><col name="_guid_" value="%d"/><col name="name" value="customer %d"/>'
                      '<col name="qty" value="%d"/><col name="day" value="2010-12-%02d"/></row>'
                      % (i, i, i % 97, i % 28 + 1))
        out.write("</data></dataset>")


def cxx_times(build, dataset):
    out = subprocess.run(
        [os.path.join(build, "bench", "python_baseline_bench"), "--benchmark_format=json",
         "--benchmark_repetitions=3"],
        env=dict(os.environ, VELD_BENCH_DATASET=dataset), check=True, capture_output=True,
        text=True).stdout
    best = {}
    for run in json.loads(out)["benchmarks"]:
        if run.get("run_type") != "iteration":
            continue
        name = run["name"].split("/")[0]
        scale = {"ms": 1.0, "us": 1e-3, "ns": 1e-6, "s": 1e3}[run["time_unit"]]
        best[name] = min(best.get(name, float("inf")), run["real_time"] * scale)
    return best


def main(argv):
    build = os.path.abspath(argv[1] if len(argv) > 1 else "build")
    rows = int(argv[2]) if len(argv) > 2 else 100000
    os.environ["LC_ALL"] = "C"  # the library reads C as en-US, as the C++ side installs
    sys.path.insert(0, os.path.join(build, "python"))
    import veld

    with tempfile.TemporaryDirectory(prefix="veld-pybench.") as work:
        dataset = os.path.join(work, "rows.xml")
        write_dataset(dataset, rows)
        cxx = cxx_times(build, dataset)

        ds = veld.KvoDatasetO()
        assert ds.ParseFile(dataset), ds.GetLastError()
        assert ds.GetDataRowCount("rows") == rows

        def read_rows():
            for i in range(1, rows + 1):
                ok, row = ds.GetDataRowByIndex("rows", i)

        pair = (True, "")

        def plain_loop():
            for i in range(1, rows + 1):
                ok, row = pair

        helper = veld.KvoDataCtrlHelper()
        assert helper.LoadFile(dataset)

        def fill_list():
            lv = veld.HeadlessListView()
            helper.ListView_InitializeColumns(lv, SPEC)
            assert helper.ListView_LoadData(lv), helper.GetLastError()
            return lv

        loop = best_of(3, plain_loop)
        figures = [("read every row", best_of(3, read_rows), cxx["BM_ReadEveryRowCxx"]),
                   ("fill a headless list", best_of(3, fill_list),
                    cxx["BM_FillHeadlessListCxx"])]
    print("%d rows; plain Python loop of the same count: %.1f ms" % (rows, loop))
    print("%-22s %12s %12s %16s %8s" % ("work", "Python", "C++", "C++ + loop", "ratio"))
    for name, python, native in figures:
        print("%-22s %9.1f ms %9.1f ms %13.1f ms %7.2fx" % (name, python, native, native + loop,
                                                            python / (native + loop)))


if __name__ == "__main__":
    main(sys.argv)
