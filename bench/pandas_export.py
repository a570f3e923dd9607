#!/usr/bin/env python3
"""The script a user would write to export a dataset file to an SQLite table
without the library: lxml parses the file, each row becomes a dict of its
cols, pandas writes the frame.

  pandas_export.py FILE DATA_ID DATABASE TABLE

Appends to the existing table in one transaction, as `veld datasets export`
does. Prints the number of rows written.
"""
import sqlite3
import sys

import pandas
from lxml import etree


def main():
    if len(sys.argv) != 5:
        print(__doc__, file=sys.stderr)
        return 2
    path, data_id, database, table = sys.argv[1:]
    tree = etree.parse(path)
    rows = []
    for data in tree.getroot().iterfind("data"):
        if data.get("guid", "").lower() != data_id.lower():
            continue
        for row in data.iterfind("row"):
            if row.get("index") == "0":
                continue
            rows.append({col.get("name"): col.get("value") for col in row.iterfind("col")})
    frame = pandas.DataFrame(rows)
    with sqlite3.connect(database) as connection:
        frame.to_sql(table, connection, if_exists="append", index=False)
    print(len(rows))
    return 0


if __name__ == "__main__":
    sys.exit(main())
