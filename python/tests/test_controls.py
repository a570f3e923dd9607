"""KvoDataCtrlHelper over the three headless controls, through Python."""
import gc

import pytest

import veld
from conftest import dataset_text

SPEC = ('<cols><col name="Name" field="name" type="text"/>'
        '<col name="Day" field="day" type="date"/>'
        '<col name="Qty" field="qty" type="integer"/></cols>')
ROWS = [{"_guid_": "a", "id": "r", "parent": "", "name": "pear", "day": "2010-12-19",
         "qty": "10", "tag": "t1"},
        {"_guid_": "b", "id": "c", "parent": "r", "name": "Apple", "day": "2009-01-02",
         "qty": "9", "tag": "t2"},
        {"_guid_": "c", "id": "d", "parent": "r", "name": "fig", "day": "2011-06-30",
         "qty": "100", "tag": "t3"}]


def loaded_list():
    helper = veld.KvoDataCtrlHelper()
    lv = veld.HeadlessListView()
    assert helper.ListView_InitializeColumns(lv, SPEC), helper.GetLastError()
    assert helper.LoadXml(dataset_text(ROWS))
    assert helper.ListView_LoadData(lv, sTagFieldName="tag"), helper.GetLastError()
    return helper, lv


def column(lv, n):
    items = lv.ListItems()
    return [items.Item(i).SubItems(n) for i in range(1, items.Count + 1)]


def test_a_list_is_filled_sorted_and_read():
    helper, lv = loaded_list()
    assert column(lv, 0) == ["pear", "Apple", "fig"]
    assert column(lv, 1) == ["12/19/2010", "1/2/2009", "6/30/2011"]
    helper.ListView_SortData(lv, 3)
    assert column(lv, 2) == ["9", "10", "100"]
    assert lv.Sorted and lv.SortKey == 2 and lv.SortOrder == 0
    assert helper.ListView_SelectItemByIDString(lv, "c")
    assert helper.ListView_GetSelectedItemIDString(lv) == (True, "c")
    assert helper.ListView_GetSelectedItemTag(lv) == (True, "t3")
    assert helper.ListView_GetRowColumnData(lv, 1, 1) == (True, "Apple")
    assert helper.ListView_SetRowColumnData(lv, 1, 1, "Quince", 255)
    assert lv.ListItems().Item(1).Text == "Quince"
    assert lv.ListItems().Item(1).ForeColor == 255
    assert helper.ListView_GetColumnIndex(lv, "qty") == 3
    assert veld.KvoDataCtrlHelper.ListView_FormatColumnData("1234.5", "#,##0.00") == "1,234.50"
    ok, missing = helper.ListView_GetRowColumnData(lv, 9, 1)
    assert not ok and missing == ""


def test_wrong_controls_and_missing_items_fail_with_the_messages():
    helper = veld.KvoDataCtrlHelper()
    assert not helper.ListView_LoadData(None)
    assert helper.GetLastError() == "ListView object required."
    assert not helper.ListView_LoadData(veld.HeadlessTreeView())
    assert helper.GetLastError() == "ListView object required."
    helper, lv = loaded_list()
    assert not helper.ListView_SelectItemByIDString(lv, "zz")
    assert helper.GetLastError() == "Specified item can't be found."


def test_a_tree_and_a_combo_are_filled():
    helper = veld.KvoDataCtrlHelper()
    assert helper.LoadXml(dataset_text(ROWS))
    tree = veld.HeadlessTreeView()
    assert helper.TreeView_LoadData(tree, "id", "parent", "name", sFolderImg="folder",
                                    sItemImg="item"), helper.GetLastError()
    root = tree.Nodes().Item("Kr")
    assert root.Children == 2 and root.Image == "folder"
    assert root.Child.Text == "Apple" and root.Child.Next.Text == "fig"
    assert root.Child.Parent.Text == "pear"
    assert helper.TreeView_SelectItemByIDString(tree, "d")
    assert helper.TreeView_GetSelectedItemIDString(tree) == (True, "d")
    assert helper.TreeView_GetSelectedItemTag(tree) == (True, "t3")

    combo = veld.HeadlessImageCombo()
    assert helper.ImageCombo_LoadHierData(combo, "id", "parent", "name"), helper.GetLastError()
    items = combo.ComboItems()
    assert [items.Item(i).Indentation for i in range(1, len(items) + 1)] == [0, 1, 1]
    assert helper.ImageCombo_SelectItemByText(combo, " FIG ")
    assert helper.ImageCombo_GetSelectedItemIDString(combo) == (True, "d")
    assert helper.ImageCombo_GetSelectedItemTag(combo) == (True, "t3")
    assert helper.ImageCombo_GetSelectedItemText(combo) == (True, "fig", "")
    assert combo.Text == "fig" and combo.SelectedItem.Key == "Kd"


def test_the_control_interfaces_raise_the_collection_errors():
    lv = veld.HeadlessListView()
    lv.ListItems().Add(Key="k1", Text="one")
    with pytest.raises(veld.AutomationError) as raised:
        lv.ListItems().Add(Key="k1")
    assert raised.value.number == 35602
    with pytest.raises(veld.AutomationError) as raised:
        lv.ListItems().Item(5)
    assert raised.value.number == 35600
    with pytest.raises(veld.AutomationError) as raised:
        lv.ListItems().Item(None)
    assert raised.value.number == 13
    nodes = veld.HeadlessTreeView().Nodes()
    nodes.Add(Key="a", Text="a")
    child = nodes.Add("a", veld.tvwChild, "b", "b")
    assert child.Parent.Key == "a"


def test_controls_and_elements_outlive_the_helper():
    helper, lv = loaded_list()
    item = lv.ListItems().Item(2)
    del helper
    gc.collect()
    assert item.Text == "Apple"
    items = lv.ListItems()
    del lv  # the collection and the element keep the list alive
    gc.collect()
    assert items.Count == 3
    assert item.SubItems(2) == "9"
