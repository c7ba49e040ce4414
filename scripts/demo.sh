#!/bin/sh
# Shows the library at work: kora-host finds the netlist module in the tools folder that a ts.ini names, takes it
# through its phases and lets it read a netlist.
#
#   scripts/demo.sh [NETLIST.blif]
#
# What is missing on the machine is installed first.
set -eu
. "$(dirname "$0")/prepare.sh"

need cmake ninja-build g++ gcc googletest
build posix kora-host netlist >&2

netlist=${1:-$top/modules/netlist/netlists/alu74181.blif}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cat >"$folder/ts.ini" <<END
[System]
toolfolder = $top/build/posix/bin/tools
END

echo "\$ cat ts.ini"
cat "$folder/ts.ini"
echo
echo "\$ kora-host --ini ts.ini -net $(basename "$netlist")"
"$top/build/posix/bin/kora-host" --ini "$folder/ts.ini" -net "$netlist"
echo "kora-host ended with exit code $?"
