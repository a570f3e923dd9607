"""KvoGeneralItems: the interface's members, the sequence protocol, tuples."""
import pytest

import veld


def make_items():
    items = veld.KvoGeneralItems()
    items.Add("width", "1280", sKey="w")
    items.Add("height", "768")
    items.Add("title", "Orders", "string")
    return items


def test_len_iteration_and_indexing_by_position_or_key():
    items = make_items()
    assert len(items) == 3 and items.Count == 3
    assert [item.Name for item in items] == ["width", "height", "title"]
    assert items[0].Name == "width"
    assert items[-1].Name == "title"
    assert items["w"].Value == "1280"
    assert items.Item(1).Name == "width"  # the interface's 1-based position
    with pytest.raises(IndexError):
        items[3]
    with pytest.raises(veld.AutomationError):
        items["no such key"]


def test_changing_the_list_inside_a_loop_is_safe():
    items = make_items()
    seen = []
    for item in items:
        seen.append(item.Name)
        items.Remove(1)
    assert seen == ["width", "height", "title"]
    assert len(items) == 0


def test_item_fields_are_read_and_written():
    item = veld.KvoGeneralItem()
    item.Name, item.Value, item.TypeString, item.ExtraValue = "a", "1", "t", "x"
    items = veld.KvoGeneralItems()
    items.AddItem(item, "k")
    assert items["k"] is not None and items["k"].ExtraValue == "x"
    item.Value = "2"  # AddItem added a copy
    assert items.GetItemValueByName("a") == "1"
    items["k"].Value = "3"  # an item taken from the list is the list's own
    assert items.GetItemValueByName("a") == "3"
    with pytest.raises(veld.AutomationError) as raised:
        items.AddItem(None)
    assert raised.value.number == 91


def test_save_and_parse_return_their_outputs_in_a_tuple():
    items = make_items()
    ok, xml, error = items.Save("window", "option")
    assert ok and error == ""
    assert xml.startswith("<window>") and 'name="width"' in xml
    again = veld.KvoGeneralItems()
    ok, error = again.Parse(xml, bNameAsKey=True)
    assert ok and error == ""
    assert again["height"].Value == "768"
    ok, error = again.Parse("<not xml")
    assert not ok and error != ""


def test_root_tags():
    items = veld.KvoGeneralItems()
    assert items.SetRootTag("id", "main")
    assert items.GetRootTag("id") == (1, "main")
    assert items.GetRootTag("none")[0] == 0
