#!/usr/bin/env python3
"""Writes a dataset document of orders: customers, products, quantities,
prices and dates. The same arguments always give the same file.

Usage: make-orders.py [ROWS] > orders.xml   (default 3000 rows)
"""
import random
import sys
from xml.sax.saxutils import quoteattr

CUSTOMERS = [
    ("C-0001", "Alfreds Futterkiste"), ("C-0002", "Ana Trujillo Emparedados"),
    ("C-0003", "Antonio Moreno Taquería"), ("C-0004", "Around the Horn"),
    ("C-0005", "Berglunds snabbköp"), ("C-0006", "Blauer See Delikatessen"),
    ("C-0007", "Blondel père et fils"), ("C-0008", "Bólido Comidas preparadas"),
    ("C-0009", "Bon app'"), ("C-0010", "Bottom-Dollar Markets"),
    ("C-0011", "B's Beverages"), ("C-0012", "Cactus Comidas para llevar"),
    ("C-0013", "Chop-suey Chinese"), ("C-0014", "Comércio Mineiro"),
    ("C-0015", "Consolidated Holdings"), ("C-0016", "Drachenblut Delikatessen"),
    ("C-0017", "Du monde entier"), ("C-0018", "Eastern Connection"),
    ("C-0019", "Ernst Handel"), ("C-0020", "Folk och fä HB"),
]
PRODUCTS = [
    ("P-101", "Chai", 18.00), ("P-102", "Chang", 19.00), ("P-103", "Aniseed Syrup", 10.00),
    ("P-104", "Chef Anton's Cajun Seasoning", 22.00), ("P-105", "Grandma's Boysenberry Spread", 25.00),
    ("P-106", "Uncle Bob's Organic Dried Pears", 30.00), ("P-107", "Northwoods Cranberry Sauce", 40.00),
    ("P-108", "Mishi Kobe Niku", 97.00), ("P-109", "Ikura", 31.00), ("P-110", "Queso Cabrales", 21.00),
    ("P-111", "Tofu", 23.25), ("P-112", "Pavlova", 17.45), ("P-113", "Tarte au sucre", 49.30),
    ("P-114", "Gnocchi di nonna Alice", 38.00), ("P-115", "Röd Kaviar", 15.00),
]


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 3000
    rng = random.Random(20261121)
    out = sys.stdout
    out.write("<dataset>\n  <data guid=\"orders\">\n")
    for n in range(1, rows + 1):
        code, customer = rng.choice(CUSTOMERS)
        product, product_name, price = rng.choice(PRODUCTS)
        cols = [
            ("order_no", "SO-%06d" % n),
            ("ordered", "2026-%02d-%02d" % (rng.randint(1, 12), rng.randint(1, 28))),
            ("customer", code),
            ("customer_name", customer),
            ("product", product),
            ("product_name", product_name),
            ("quantity", str(rng.randint(1, 60))),
            ("unit_price", "%.2f" % price),
            ("paid", rng.choice(["True", "False"])),
        ]
        out.write("    <row>")
        for name, value in cols:
            out.write("<col name=%s value=%s/>" % (quoteattr(name), quoteattr(value)))
        out.write("</row>\n")
    out.write("  </data>\n  <data guid=\"customers\">\n")
    for code, name in CUSTOMERS:
        out.write("    <row><col name=\"code\" value=%s/><col name=\"name\" value=%s/></row>\n"
                  % (quoteattr(code), quoteattr(name)))
    out.write("  </data>\n</dataset>\n")


if __name__ == "__main__":
    main()
