#!/bin/sh
# Shows the library at work: kora-host finds the netlist module in the tools folder that a ts.ini names, takes it
# through its phases and lets it read a netlist and write the table of its signals, to build/demo.
#
#   scripts/demo.sh [NETLIST.blif]
#
# What is missing on the machine is installed first.
set -eu
. "$(dirname "$0")/prepare.sh"

need cmake ninja-build g++ gcc googletest
build posix kora-host netlist >&2

netlist=$(realpath "${1:-$top/modules/netlist/netlists/alu74181.blif}")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
write_settings "$folder/ts.ini"

echo "\$ cat ts.ini"
cat "$folder/ts.ini"
echo
tables=$top/build/demo
name=$(basename "$netlist" .blif)
rm -rf "$tables"
mkdir -p "$tables"
echo "\$ kora-host --ini ts.ini -net $name.blif -tsv $name.tsv -csv $name.csv -html $name.html"
(
    cd "$tables"
    "$top/build/posix/bin/kora-host" --ini "$folder/ts.ini" \
        -net "$netlist" -tsv "$name.tsv" -csv "$name.csv" -html "$name.html"
)
echo "kora-host ended with exit code $?"
echo
echo "\$ head -n 12 $name.csv"
head -n 12 "$tables/$name.csv"
echo
echo "\$ ls build/demo"
ls "$tables"
