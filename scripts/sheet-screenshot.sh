#!/bin/sh
# Takes the documentation's picture of a table of signals: kora-host writes the page, Chromium without a screen shows it.
#
#   scripts/sheet-screenshot.sh [NETLIST.blif [PICTURE.png]]
#
# What is missing on the machine is installed first.
set -eu
. "$(dirname "$0")/prepare.sh"

need cmake ninja-build g++ gcc googletest chromium fonts-dejavu-core
build posix kora-host netlist >&2

netlist=${1:-$top/modules/netlist/netlists/counter4.blif}
picture=${2:-$top/docs/screenshots/netlist-table.png}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
write_settings "$folder/ts.ini"
"$top/build/posix/bin/kora-host" --ini "$folder/ts.ini" -net "$netlist" -html "$folder/table.html" >&2

mkdir -p "$(dirname "$picture")"
sandbox=
[ "$(id -u)" = 0 ] && sandbox=--no-sandbox  # which Chromium does not have for root
chromium --headless $sandbox --disable-gpu --hide-scrollbars --user-data-dir="$folder/profile" \
    --force-device-scale-factor=1.5 --window-size=752,326 --screenshot="$folder/table.png" \
    "file://$folder/table.html" >"$folder/log" 2>&1 || {
    cat "$folder/log" >&2
    exit 1
}
mv "$folder/table.png" "$picture"
echo "$picture"
