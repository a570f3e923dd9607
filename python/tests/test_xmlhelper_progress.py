"""KvoXmlHelper, and KvoProgressUpdater with Python listeners."""
import pytest

import veld
from conftest import dataset_text

SHEET = ('<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
         '<xsl:template match="/"><names><xsl:for-each select="//col[@name=\'name\']">'
         '<n><xsl:value-of select="@value"/></n></xsl:for-each></names></xsl:template>'
         '</xsl:stylesheet>')


def test_transforms_and_xpath_return_their_outputs(work):
    sheet = work / "names.xsl"
    sheet.write_text(SHEET)
    helper = veld.KvoXmlHelper()
    assert helper.LoadXml(dataset_text([{"name": "pear"}, {"name": "fig"}]))
    ok, xml = helper.TransformDataToXml(str(sheet))
    assert ok and xml.endswith("<names><n>pear</n><n>fig</n></names>")
    ok, document = helper.TransformDataToXmlDomDoc(str(sheet))
    assert ok and document.SelectNodes("//n").Length == 2
    ok, fragment = helper.GetXmlByXPath("//row[2]/col")
    assert ok and fragment == '<col name="name" value="fig"/>'
    attributes = helper.GetElemAttribute("//row[1]/col")
    assert [(a.Name, a.Value) for a in attributes] == [("name", "name"), ("value", "pear")]
    assert not helper.TransformData(str(work / "missing.xsl"))
    assert helper.GetLastError() != ""


def test_listeners_hear_each_report_until_disconnected():
    updater = veld.KvoProgressUpdater()
    heard = []
    connection = updater.Connect(lambda total, current, status: heard.append(
        (total, current, status)))
    updater.ProgressChangeNotify(10, 1, "one")
    updater.ProgressChangeNotify(10, 2)
    assert connection.Connected
    connection.Disconnect()
    updater.ProgressChangeNotify(10, 3)
    assert heard == [(10, 1, "one"), (10, 2, "")]


def test_a_listener_that_raises_ends_the_report_with_its_exception():
    updater = veld.KvoProgressUpdater()
    later = []

    def fails(total, current, status):
        raise ValueError("stop at %d" % current)

    first = updater.Connect(fails)
    second = updater.Connect(lambda *args: later.append(args))
    with pytest.raises(ValueError, match="stop at 4"):
        updater.ProgressChangeNotify(9, 4)
    assert later == []  # the notification ended at the first listener
    first.Disconnect()
    updater.ProgressChangeNotify(9, 5)
    assert later == [(9, 5, "")]
    del second


def test_a_dataset_reports_to_a_python_listener(work):
    path = work / "rows.xml"
    path.write_text(dataset_text([{"n": str(i)} for i in range(50)]))
    updater = veld.KvoProgressUpdater()
    heard = []
    connection = updater.Connect(lambda total, current, status: heard.append(current))
    ds = veld.KvoDatasetO()
    ds.SetProgressUpdater(updater)
    del updater  # the dataset keeps it
    assert ds.ParseFile(str(path))
    assert heard, "no progress reported"
    del connection
