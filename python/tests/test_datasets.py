"""KvoDatasetO and KvoDataset through Python."""
import sqlite3

import pytest

import veld
from conftest import dataset_text

ROWS = [{"id": "A1", "name": "pear", "qty": "3"},
        {"id": "B2", "name": "apple", "qty": "5"},
        {"id": "C3", "name": "pear", "qty": "7"}]


@pytest.mark.parametrize("cls", [veld.KvoDatasetO, veld.KvoDataset])
def test_rows_come_back_with_the_result_in_a_tuple(cls):
    ds = cls()
    assert ds.Parse(dataset_text(ROWS))
    assert ds.GetDataCount() == 1
    ok, data_id = ds.GetDataID(1)
    assert ok and data_id == "orders"
    assert ds.GetDataRowCount("orders") == 3
    count, rows = ds.GetDataRowArrayByKeyCol("orders", "name", "pear")
    assert count == 2 and len(rows) == 2 and 'value="A1"' in rows[0]
    ok, xml = ds.Save()
    assert ok and xml.startswith("<dataset>")
    ok, data = ds.GetData("orders")
    assert ok and data.count("<row") == 3


def test_dataset_o_rows_by_index_and_key():
    ds = veld.KvoDatasetO()
    assert ds.Parse(dataset_text(ROWS))
    ok, row = ds.GetDataRowByIndex("orders", 1)
    assert ok and 'value="pear"' in row
    ok, row_id = ds.GetDataRowID("orders", 2)
    assert ok and row_id
    ok, same = ds.GetDataRow("orders", row_id)
    assert ok and 'value="apple"' in same
    cols = ds.GetDataRowColItemsByIndex("orders", 3)
    assert [(c.Name, c.Value) for c in cols][:2] == [("id", "C3"), ("name", "pear")]
    ok, new_id = ds.AddData("more", dataset_text([{"x": "1"}], "more"))
    assert ok and ds.ExistData("more")
    ok, missing = ds.GetDataRowByIndex("orders", 9)
    assert not ok and missing == ""
    assert ds.GetLastError() != ""


def test_export_to_an_sqlite_table(work):
    path = str(work / "shop.db")
    with sqlite3.connect(path) as db:
        db.execute("CREATE TABLE orders (id VARCHAR(4), name VARCHAR(10), qty INTEGER)")
    ds = veld.KvoDatasetO()
    assert ds.Parse(dataset_text(ROWS))
    assert ds.SaveDataToMDBTable("orders", path, "orders", bClearFirst=True), ds.GetLastError()
    with sqlite3.connect(path) as db:
        assert db.execute("SELECT sum(qty) FROM orders").fetchone()[0] == 15
    assert not ds.SaveDataToMDBTable("orders", path, "no_such_table")
    assert ds.GetLastError() == "no such table: no_such_table(ERR#: -2147217865)"
    with pytest.raises(veld.AutomationError) as raised:
        ds.RaiseLastError()
    assert raised.value.number == -2147217865


def test_items_outlive_the_dataset_they_came_from():
    ds = veld.KvoDatasetO()
    assert ds.Parse(dataset_text(ROWS))
    cols = ds.GetDataRowColItemsByIndex("orders", 1)
    del ds
    assert len(cols) == 3
    assert cols.GetItemValueByName("id") == "A1"
