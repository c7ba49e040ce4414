#!/bin/sh
# Stations on a network of their own, among themselves and with Samba's nmbd:
#
#   peers.sh STATION_PROGRAM
#
# The network is two namespaces with a cable between them, within namespaces that end with this script, however it ends:
# nothing of it is seen outside, and nothing remains.
set -eu
PATH=$PATH:/usr/sbin:/sbin
station=$1

if [ "${2:-}" != inside ]; then
    skip() {
        echo "SKIPPED: $1"
        [ "${CI:-}" = true ] && exit 1
        exit 77
    }
    [ "$(id -u)" = 0 ] || skip "only root may make networks"
    for tool in unshare ip nmbd nmblookup; do
        command -v $tool >/dev/null || skip "$tool is not installed"
    done
    apart="unshare --mount --net --pid --fork --kill-child --mount-proc"
    $apart true || skip "no namespaces can be made here"
    exec $apart sh "$0" "$station" inside
fi

mount -t tmpfs tmpfs /run
mkdir /run/peers /run/samba
cd /run/peers

cable() {
    ip link add one netns one type veth peer name two netns two
    for end in one:10.77.0.1 two:10.77.0.2; do
        side=${end%:*}
        ip -n "$side" addr add "${end#*:}/24" broadcast 10.77.0.255 dev "$side"
        ip -n "$side" link set "$side" up
    done
}
at() { ip netns exec "$@"; }
station_at() { at "$1" "$station" "$2" "$1.ini" "$3" "$4" "$5"; }
# expect TEXT PROGRAM...: what it prints has to have that in it.
expect() {
    text=$1
    shift
    "$@" >output 2>&1 || true
    grep -qF -- "$text" output || { echo "expected '$text' of '$*':" && cat output && exit 1; }
}

for side in one two; do
    ip netns add $side
    ip -n $side link set lo up
    printf '[NetBIOS]\nInterface = %s\n[System]\ntoolfolder = /run/peers/none\n' $side >$side.ini
done
cable

echo "== three stations, two of them behind one address, exchange 10,000 datagrams"
station_at one exchange EXCHANGE 0 10000 & first=$!
station_at one exchange EXCHANGE 1 10000 & second=$!
station_at two exchange EXCHANGE 2 10000
wait $first
wait $second

echo "== Samba's nmbd refuses its unique name, and no other one"
cat >smb.conf <<END
[global]
workgroup = WORKGROUP
netbios name = SAMBA
server string = announced to all
preferred master = yes
interfaces = two
bind interfaces only = yes
state directory = /run/peers
cache directory = /run/peers
private dir = /run/peers
log file = /run/peers/nmbd.log
END
mkfifo fifo
station_at one talk 'KORA PEERS' here '' >fifo & answering=$!
exec 3<fifo
at two nmbd -F --no-process-group -s smb.conf & nmbd=$!
until at two nmblookup -s smb.conf SAMBA#20 >/dev/null 2>&1; do
    kill -0 $nmbd 2>output || { cat nmbd.log; exit 1; }
done
expect 'code 22' station_at one unique SAMBA '' ''
expect 'code 0' station_at one unique SOMEBODY '' ''

echo "== nmblookup finds a group by broadcast, and its node's status names it"
station_at one talk 'KORA PEERS' ask answer  # which takes until the other one is registered
expect '10.77.0.1 KORA PEERS<20>' at two nmblookup -s smb.conf 'KORA PEERS#20'
expect 'KORA PEERS      <20> - <GROUP>' at two nmblookup -s smb.conf -A 10.77.0.1

echo "== nmbd's announcement to its workgroup is heard"
station_at one talk "$(printf 'WORKGROUP      \036')" '' 'announced to all'
kill $nmbd
wait $nmbd || true

echo "== a station outlives the loss of its interface"
says() { read -r said <&3 && [ "$said" = "$1" ]; }
ip -n one link set one down
says "sends with code 67"
ip -n one link set one up
says "sends with code 0"
station_at two talk 'KORA PEERS' ask answer
ip -n one link del one
says "sends with code 67"
cable
says "sends with code 0"
station_at two talk 'KORA PEERS' ask answer
kill -0 $answering
