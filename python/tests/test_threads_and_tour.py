"""Long calls release the GIL; the Python tour runs."""
import os
import sqlite3
import subprocess
import sys
import threading
import time

import veld
from conftest import EXAMPLES, dataset_text

ROWS = 60000


def big_dataset(path):
    rows = [{"_guid_": str(i), "name": "customer %d" % i, "qty": str(i % 97),
             "day": "2010-12-%02d" % (i % 28 + 1)} for i in range(ROWS)]
    path.write_text(dataset_text(rows))
    return str(path)


def ticks_during(call):
    """Runs `call` in a thread and counts the turns this thread gets meanwhile."""
    started = threading.Event()
    done = threading.Event()
    result = {}

    def worker():
        started.set()
        result["value"] = call()
        done.set()

    thread = threading.Thread(target=worker)
    thread.start()
    started.wait()
    ticks = 0
    begin = time.perf_counter()
    while not done.is_set():
        ticks += 1
        time.sleep(0)
    elapsed = time.perf_counter() - begin
    thread.join()
    return result["value"], ticks, elapsed


def test_parse_file_export_and_list_loading_let_other_threads_run(work):
    path = big_dataset(work / "big.xml")
    ds = veld.KvoDatasetO()
    ok, ticks, elapsed = ticks_during(lambda: ds.ParseFile(path))
    assert ok, ds.GetLastError()
    assert ticks > 100, "only %d turns in %.3f s" % (ticks, elapsed)

    db = str(work / "big.db")
    with sqlite3.connect(db) as connection:
        connection.execute("CREATE TABLE orders (_guid_ VARCHAR(10), name VARCHAR(20),"
                           " qty INTEGER, day DATE)")
    ok, ticks, elapsed = ticks_during(lambda: ds.SaveDataToMDBTable("orders", db, "orders"))
    assert ok, ds.GetLastError()
    assert ticks > 100, "only %d turns in %.3f s" % (ticks, elapsed)

    helper = veld.KvoDataCtrlHelper()
    lv = veld.HeadlessListView()
    assert helper.LoadFile(path)
    assert helper.ListView_InitializeColumns(
        lv, '<cols><col name="Name" field="name"/><col name="Qty" field="qty" type="integer"/>'
            '<col name="Day" field="day" type="date"/></cols>')
    ok, ticks, elapsed = ticks_during(lambda: helper.ListView_LoadData(lv))
    assert ok, helper.GetLastError()
    assert lv.ListItems().Count == ROWS
    assert ticks > 100, "only %d turns in %.3f s" % (ticks, elapsed)


def test_the_python_tour_runs():
    env = dict(os.environ)
    env.pop("VELD_REGISTRY_FILE", None)  # the tour makes its own
    tour = os.path.join(EXAMPLES, "python", "tour.py")
    done = subprocess.run([sys.executable, tour], env=env, capture_output=True, text=True,
                          timeout=300)
    assert done.returncode == 0, done.stdout + done.stderr
    assert done.stdout.rstrip().endswith("The tour worked.")
    assert "orders: 3000 rows" in done.stdout
