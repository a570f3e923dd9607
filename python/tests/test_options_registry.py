"""KvoOption and KvoRegistry through Python."""
import veld

APP = ('<config><section id="main"><group id="window">'
       '<option name="width" value="1280"/><option name="title" value="Orders"/>'
       '</group></section><section id="db"><group id="general">'
       '<option name="server" value="local"/></group></section></config>')


def test_save_option_to_xml_returns_the_result_and_the_xml():
    opt = veld.KvoOption()
    assert opt.LoadOptionFromXml(APP)
    ok, xml = opt.SaveOptionToXml("main")
    assert ok
    assert xml == ('<config><section id="main"><group id="window">'
                   '<option name="width" value="1280"/><option name="title" value="Orders"/>'
                   '</group></section></config>')


def test_section_lists_are_only_read():
    opt = veld.KvoOption()
    sections = ["db"]
    assert opt.LoadOptionsFromXml(APP, sections)
    assert sections == ["db"]
    assert opt.GetOption("server", "db", "general") == "local"
    assert opt.GetOption("width", "main", "window", "none") == "none"
    ok, xml = opt.SaveOptionsToXml(["db"])
    assert ok and 'id="db"' in xml


def test_options_files_groups_and_errors(work):
    opt = veld.KvoOption()
    assert opt.LoadOptionFromXml(APP)
    assert opt.SetOption("height", "768", "main", "window")
    group = opt.GetGroupOptions("main", "window")
    assert [item.Name for item in group] == ["width", "title", "height"]
    nodes = opt.GetOptionGroup("main", "window")
    assert nodes.Length == 3 and nodes[0].GetAttribute("name") == "width"
    assert opt.SetOptionGroup("copy", "window", nodes)
    assert opt.GetOption("title", "copy", "window") == "Orders"
    path = str(work / "app.xml")
    assert opt.SaveOption(path)
    again = veld.KvoOption()
    assert again.LoadOption(path, "copy")
    assert again.GetOption("height", "copy", "window") == "768"
    assert not again.LoadOption(str(work / "missing.xml"))
    assert again.GetLastError() == "Option file not found - " + str(work / "missing.xml") + "."
    assert opt.Decode(opt.Encode("s3cret!")) == "s3cret!"


def test_registry_values_come_back_as_tuples():
    reg = veld.KvoRegistry()
    key = "HKEY_CURRENT_USER\\Software\\Veld Python"
    assert reg.CreateKey(key)
    assert reg.SetStringValue(key, "name", "Veld")
    assert reg.SetDWORDValue(key, "count", 7)
    assert reg.SetBinaryValue(key, "raw", b"\x00\x01\xff")
    result, name = reg.GetStringValue(key, "name")
    assert name == "Veld"
    result, count = reg.GetDWORDValue(key, "count")
    assert count == 7
    result, raw = reg.GetBinaryValue(key, "raw")
    assert raw == b"\x00\x01\xff"
    ok, xml = reg.GetKeyValuesToXml(key)
    assert ok and 'name="count"' in xml
    opt = veld.KvoOption()
    assert opt.LoadOptionFromRegistry(key, "main")
    assert opt.GetOption("name", "main", "general") == "Veld"
    assert reg.DeleteKey(key)
