#!/bin/sh
# Shows stations meet: two kora-hosts on this machine join a group over the loopback, see each other, say a line each
# and end. It needs no privileges, and nothing leaves the machine.
#
#   scripts/stations-demo.sh
#
# What is missing on the machine is installed first. See docs/stations.md.
set -eu
. "$(dirname "$0")/prepare.sh"

need cmake ninja-build g++ gcc googletest
build posix kora-host stations >&2

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/tools"
cp "$top/build/posix/bin/tools/stations.qzx" "$folder/tools"
# Ports of this run's own, above those that take a privilege and below those that the system gives away.
port=$((10000 + $$ % 11000 * 2))
cat >"$folder/ts.ini" <<END
[System]
toolfolder = $folder/tools
[NetBIOS]
Interface = lo
Broadcast = 127.255.255.255
NamePort = $port
DatagramPort = $((port + 1))
END

# host NAME: a station that ends once it has met another, or in words when there was none.
host() {
    HOME=$folder XDG_CONFIG_HOME=$folder QZSTATION=$1 "$top/build/posix/bin/kora-host" --ini "$folder/ts.ini" \
        -peer TEAM -till 2 -for 30 -say "Hello from $1" >"$folder/$1" 2>"$folder/$1.log" || {
        echo "$1 ended with exit code $?" >&2
        cat "$folder/$1.log" >&2
        return 1
    }
}

host alpha &
alpha=$!
result=0
host beta || result=1
wait "$alpha" || result=1

echo "\$ cat ts.ini"
cat "$folder/ts.ini"
for name in alpha beta; do
    echo
    echo "\$ QZSTATION=$name kora-host --ini ts.ini -peer TEAM -till 2 -for 30 -say \"Hello from $name\""
    cat "$folder/$name"
done
exit $result
