#!/usr/bin/env bash
# Speed and cost against the built-in virtual ECR:
#  - records per second through the receipt server, next to the floor of the
#    protocol's fixed waits measured in the same run, and CPU per 1000 records;
#  - a 9000-PLU table and a 256-row logo downloaded at 115200 and 9600 baud,
#    next to the wire time of the same bytes and the protocol's fixed waits;
#  - CPU used by an idle headless driver over IDLE_SECONDS (default 60),
#    extrapolated to an hour.
set -euo pipefail
cd "$(dirname "$0")/.."
idle_seconds="${IDLE_SECONDS:-60}"

bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kelmdrev bench_driver bench_programming >/dev/null

echo "== driver throughput =="
build/default/bench/bench_driver 999

echo "== programming downloads =="
build/default/bench/bench_programming 9000 9000

echo "== idle driver =="
home=$(mktemp -d)
mkdir -p "$home/spool"
printf '[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerDir=%s\r\n' "$home/spool" > "$home/KelmDrev.ini"
build/default/src/kelmdrev --headless --home "$home" 2>/dev/null &
pid=$!
sleep 3
ticks() { awk '{print $14 + $15}' "/proc/$pid/stat"; }
before=$(ticks)
sleep "$idle_seconds"
after=$(ticks)
hz=$(getconf CLK_TCK)
kill -INT $pid; wait $pid || true
rm -rf "$home"
awk -v t=$((after - before)) -v hz="$hz" -v s="$idle_seconds" 'BEGIN {
  cpu = t / hz
  printf "idle CPU over %d s          %.2f s (%.3f%% of one core)\n", s, cpu, 100 * cpu / s
  printf "idle CPU per hour (extrap.)  %.1f s\n", cpu * 3600 / s
}'
