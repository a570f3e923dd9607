#!/usr/bin/env python3
"""The tour of examples/tour.sh, in Python through the veld module.

Works in a temporary directory; the registry is an SQLite store there too,
so nothing of the user's own is touched.

Usage: PYTHONPATH=<dir of the veld module> python3 examples/python/tour.py
"""
import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = os.path.dirname(HERE)


def step(title):
    print("\n== " + title)


def check(ok, obj):
    """Stops the tour with the object's recorded error when a call failed."""
    if not ok:
        sys.exit("failed: " + obj.GetLastError())


def main():
    work = tempfile.mkdtemp(prefix="veld-tour-py.")
    try:
        # The registry store is chosen when the module first touches it.
        os.environ["VELD_REGISTRY_FILE"] = os.path.join(work, "registry.db")
        import veld

        app = os.path.join(work, "app.xml")
        shutil.copy(os.path.join(EXAMPLES, "app-options.xml"), app)
        orders = os.path.join(work, "orders.xml")
        with open(orders, "w", encoding="utf-8") as out:
            subprocess.run([sys.executable, os.path.join(EXAMPLES, "make-orders.py"), "3000"],
                           stdout=out, check=True)

        step("Options: read, change, encode")
        opt = veld.KvoOption()
        check(opt.LoadOption(app), opt)
        print("title:", opt.GetOption("title", "main", "window"))
        check(opt.SetOption("width", "1280", "main", "window"), opt)
        for item in opt.GetGroupOptions("main", "window"):
            print("  %s = %s" % (item.Name, item.Value))
        secret = opt.Encode("s3cret!")
        check(opt.SetOption("password", secret, "database", "general"), opt)
        print("stored password:", opt.GetOption("password", "database", "general"))
        print("decoded:", opt.Decode(secret))
        check(opt.SaveOption(app), opt)

        step("Registry: mirror an option group to a key and back")
        key = "HKEY_CURRENT_USER\\Software\\Veld Tour"
        check(opt.SaveOptionToRegistry(key, "main", "window"), opt)
        reg = veld.KvoRegistry()
        ok, xml = reg.GetKeyValuesToXml(key, sGroupID="window")
        check(ok, reg)
        print(xml)
        check(reg.SetDWORDValue(key, "width", 1600), reg)
        check(opt.LoadOptionFromRegistry(key, "main", "window"), opt)
        print("width:", opt.GetOption("width", "main", "window"))

        step("Datasets: summary, rows, search")
        ds = veld.KvoDatasetO()
        check(ds.ParseFile(orders), ds)
        for index in range(1, ds.GetDataCount() + 1):
            ok, data_id = ds.GetDataID(index)
            print("%s: %d rows" % (data_id, ds.GetDataRowCount(data_id)))
        for index in (1, 2):
            row = ds.GetDataRowColItemsByIndex("orders", index)
            print("  " + ", ".join("%s=%s" % (col.Name, col.Value) for col in row))
        count, rows = ds.GetDataRowArrayByKeyCol("orders", "customer", "C-0009")
        print("orders of C-0009:", count)

        step("Export the orders into an SQLite table")
        shop = os.path.join(work, "shop.db")
        with sqlite3.connect(shop) as db:
            db.execute("CREATE TABLE orders (order_no VARCHAR(10), ordered DATE,"
                       " customer VARCHAR(10), quantity INTEGER, unit_price NUMERIC(10,2),"
                       " paid BOOLEAN)")
        check(ds.SaveDataToMDBTable("orders", shop, "orders", bClearFirst=True), ds)
        with sqlite3.connect(shop) as db:
            orders_count, items, turnover = db.execute(
                "SELECT count(*), sum(quantity), printf('%.2f', sum(quantity * unit_price))"
                " FROM orders").fetchone()
        print("orders %d, items %d, turnover %s" % (orders_count, items, turnover))

        step("XML: an HTML report with a style sheet, and XPath")
        helper = veld.KvoXmlHelper()
        check(helper.LoadFile(orders), helper)
        report = os.path.join(work, "report.html")
        check(helper.TransformDataToXmlFile(os.path.join(EXAMPLES, "report.xsl"), report),
              helper)
        with open(report, encoding="utf-8") as html:
            text = html.read()
        print("report.html: %d bytes, %d customer lines" % (len(text.encode()),
                                                           text.count("<tr><td>")))
        check(helper.LoadFile(orders), helper)
        attributes = helper.GetElemAttribute("//data[@guid='orders']/row[1]/col[1]")
        print(", ".join("%s=%s" % (a.Name, a.Value) for a in attributes))

        step("Errors are recorded, and raised on request")
        failed = ds.SaveDataToMDBTable("orders", shop, "no_such_table")
        print("export to no_such_table:", failed, "-", ds.GetLastError())
        try:
            ds.RaiseLastError()
        except veld.AutomationError as error:
            print("raised: %d %s" % (error.number, error.description))
        if failed:
            sys.exit("unexpected success")

        print("\nThe tour worked.")
    finally:
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
