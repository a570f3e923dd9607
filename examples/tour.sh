#!/usr/bin/env bash
# A short tour of the veld tool over the sample documents in this directory.
# Works in a temporary directory; the registry is an SQLite store there too,
# so nothing of the user's own is touched.
#
# Usage: examples/tour.sh [PATH-TO-VELD [RUNNER]]   (default: veld on PATH)
# RUNNER runs the tool, as wine64 runs veld.exe of the Windows build.
set -euo pipefail

veld_path=${1:-veld}
runner=${2:-}
veld() { ${runner:+"$runner"} "$veld_path" "$@"; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/veld-tour.XXXXXX")
trap 'rm -rf "$work"' EXIT
export VELD_REGISTRY_FILE="$work/registry.db"

step() { printf '\n== %s\n' "$*"; }
show() { printf '$ veld %s\n' "$*"; veld "$@"; }

cp "$here/app-options.xml" "$work/app.xml"
python3 "$here/make-orders.py" 3000 >"$work/orders.xml"
cd "$work"

step "Options: read, change, encode"
show options get --section main --group window app.xml title
show options set --section main --group window app.xml width 1280
show options list --section main --group window app.xml
secret=$(veld options encode "s3cret!")
show options set --section database --group general app.xml password "$secret"
printf 'stored password: %s\n' "$(veld options get --section database --group general app.xml password)"
show options decode "$secret"

step "Registry: mirror an option group to a key and back"
key='HKEY_CURRENT_USER\Software\Veld Tour'
show registry to-registry --section main --group window app.xml "$key"
show registry dump --group window "$key"
show registry set --type dword "$key" width 1600
show registry from-registry --section main --group window app.xml "$key"
show options get --section main --group window app.xml width

step "Datasets: summary, rows, search"
show datasets summary orders.xml
show datasets rows --count 2 orders.xml orders
printf '$ veld datasets find orders.xml orders customer C-0009 | wc -l\n'
veld datasets find orders.xml orders customer C-0009 | wc -l

step "Export the orders into an SQLite table"
sqlite3 shop.db "CREATE TABLE orders (order_no VARCHAR(10), ordered DATE, customer VARCHAR(10),
  quantity INTEGER, unit_price NUMERIC(10,2), paid BOOLEAN)"
show datasets export --clear orders.xml orders shop.db orders
sqlite3 -header -column shop.db "SELECT count(*) AS orders, sum(quantity) AS items,
  printf('%.2f', sum(quantity * unit_price)) AS turnover FROM orders"

step "XML: an HTML report with a style sheet, and XPath"
show xml transform "$here/report.xsl" orders.xml report.html
printf 'report.html: %s bytes, %s customer lines\n' "$(wc -c <report.html)" \
  "$(grep -o '<tr><td>' report.html | wc -l)"
show xml extract --attributes orders.xml "//data[@guid='orders']/row[1]/col[1]"

step "Errors go to standard error with a non-zero exit status"
if veld datasets export orders.xml orders shop.db no_such_table; then
  echo "unexpected success" >&2
  exit 1
else
  printf '(exit status %s)\n' "$?"
fi

printf '\nThe tour worked.\n'
