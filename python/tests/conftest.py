"""Shared set-up of the veld module's tests.

The registry is an SQLite store in a temporary directory (the module reads
VELD_REGISTRY_FILE when it first touches the registry), and the regional
settings are en-US, so that formats read the same on every machine.
"""
import os
import tempfile

_WORK = tempfile.mkdtemp(prefix="veld-pytest.")
os.environ["VELD_REGISTRY_FILE"] = os.path.join(_WORK, "registry.db")
os.environ["LC_ALL"] = "C"  # the library reads C as en-US

import pytest  # noqa: E402

import veld  # noqa: E402

EXAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples")


def dataset_text(rows, data_id="orders"):
    """A dataset document of one data element: rows are dicts of cols."""
    out = ['<dataset><data guid="%s">' % data_id]
    for row in rows:
        out.append("<row>" + "".join('<col name="%s" value="%s"/>' % (k, v)
                                     for k, v in row.items()) + "</row>")
    out.append("</data></dataset>")
    return "".join(out)


@pytest.fixture
def work(tmp_path):
    return tmp_path


@pytest.fixture
def examples():
    return os.path.abspath(EXAMPLES)
