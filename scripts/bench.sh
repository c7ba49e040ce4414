#!/bin/sh
# Measures our operations beside what users would pick instead, in one run and in turn, and prints case, ours, the best
# peer, their ratio, and how cost grows.
#
#   scripts/bench.sh             everything
#   scripts/bench.sh sheet_      the cases whose names match
#   scripts/bench.sh --write     everything, and writes docs/benchmarks.md and its charts
#
# Each figure is the median of repetitions that are interleaved at random, on one core. What is missing on the machine
# is installed first. The run is kept as JSON in build/bench/run.
set -eu
. "$(dirname "$0")/prepare.sh"

write=
pattern=.
case ${1:-} in
--help | -h) sed -n '2,11s/^# \{0,1\}//p' "$0" && exit 0 ;;
--write) write=yes ;;
?*) pattern=$1 ;;
esac

need cmake ninja-build g++ gcc flex pkg-config python3 python3-matplotlib libabsl-dev libbenchmark-dev libboost-dev \
    libfmt-dev libglib2.0-dev libpcre2-dev libspdlog-dev qtbase5-dev
build bench
mkdir -p "$top/build/bench/run"
cd "$top/build/bench/run"
core=$(($(nproc) - 1))
for program in kora-bench kora-bench-modules; do
    taskset -c "$core" "../bin/$program" --benchmark_filter="$pattern" --benchmark_min_time=0.02 \
        --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true \
        --benchmark_out="$program.json" --benchmark_out_format=json >"$program.log" 2>&1 || {
        cat "$program.log" >&2
        exit 1
    }
done
set -- kora-bench.json kora-bench-modules.json
if [ "$pattern" = . ]; then
    "$top/bench/measure_host.py" ../bin ../bench/bench-tiny.qzx >host.json 2>host.log
    set -- --host host.json "$@"
fi
[ -z "$write" ] || set -- --write "$top/docs" "$@"
exec "$top/bench/report.py" "$@"
