"""Variant as plain Python values, Format, CDate, and the errors."""
import datetime

import pytest

import veld


def test_plain_values_go_in_and_come_back():
    assert veld.Format(None) == ""  # None is Empty
    assert veld.Format(veld.Null) is veld.Null  # Format of Null is Null
    assert veld.Format(True) == "True"
    assert veld.Format(42, "000") == "042"
    assert veld.Format(1234.5, "#,##0.00") == "1,234.50"
    assert veld.Format("text", ">") == "TEXT"
    assert veld.Format(3_000_000_000, "0") == "3000000000"  # beyond 32 bits: a Double


def test_dates_are_datetimes_both_ways():
    day = veld.CDate("2010-12-19 15:04:05")
    assert day == datetime.datetime(2010, 12, 19, 15, 4, 5)
    assert veld.Format(datetime.datetime(2010, 12, 19, 15, 4, 5), "yyyy/mm/dd hh:nn:ss") == \
        "2010/12/19 15:04:05"
    # Before 1899-12-30 the fraction is still the time of that day.
    early = datetime.datetime(1899, 12, 29, 6, 0, 0)
    assert veld.CDate(early) == early
    assert veld.Format(early, "yyyy-mm-dd hh:nn") == "1899-12-29 06:00"
    assert veld.IsDate("19 December 2010")
    assert not veld.IsDate("no date")


def test_markers_are_distinct_and_printable():
    assert veld.Null is not veld.Missing
    assert repr(veld.Null) == "veld.Null"
    assert repr(veld.Missing) == "veld.Missing"


def test_values_that_do_not_convert_are_type_errors():
    with pytest.raises(TypeError):
        veld.Format([1, 2])


def test_raised_errors_are_automation_errors_with_number_description_source():
    with pytest.raises(veld.AutomationError) as raised:
        veld.FormatText(veld.Null)
    assert raised.value.number == 94
    assert raised.value.description == "Invalid use of Null"
    assert isinstance(raised.value.source, str)
    assert "Invalid use of Null" in str(raised.value)
    with pytest.raises(veld.AutomationError) as raised:
        veld.CDate("no date")
    assert raised.value.number == 13


def test_error_object_sets_and_raises():
    err = veld.KvoErrObject()
    err.SetError2(1001, "Something went wrong", vSource="Tour")
    assert err.Number == 1001
    assert err.Description == "Something went wrong"
    assert err.Source == "Tour"
    with pytest.raises(veld.AutomationError) as raised:
        err.Raise()
    assert (raised.value.number, raised.value.description) == (1001, "Something went wrong")
    err.Clear()
    assert err.Number == 0


def test_utils():
    utils = veld.KvoUtils()
    general = utils.KvoGenerateGUID()
    pure = utils.KvoGenerateGUID(veld.Kvo_GUID_FORMAT_PUREDATA)
    assert len(general) == 38 and general.startswith("{")
    assert len(pure) == 32
    assert utils.KvoNumberToHexStr(255, 4) == "00FF"
