#!/usr/bin/env bash
# Speed and cost against the built-in virtual ECR:
#  - records per second through the receipt server at 115200 and 9600 baud, next to
#    the floor of the same bytes on the wire both ways plus the protocol's
#    fixed waits, and CPU per 1000 records;
#  - a PLU table (9000 rows at 115200 baud, 1500 at 9600, so that the whole
#    run stays under ten minutes) and a 256-row logo, each next to the same
#    floor;
#  - GET /api/v1/status latency while a 9000-PLU download holds the line;
#  - CPU used by an idle headless driver over IDLE_SECONDS (default 60),
#    extrapolated to an hour.
set -euo pipefail
cd "$(dirname "$0")/.."
idle_seconds="${IDLE_SECONDS:-60}"

bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kelmdrev bench_driver bench_programming bench_http >/dev/null

echo "== driver throughput =="
build/default/bench/bench_driver 999 115200
build/default/bench/bench_driver 300 9600

echo "== programming downloads =="
build/default/bench/bench_programming 9000 1500

echo "== HTTP status while a 9000-PLU download runs =="
build/default/bench/bench_http 9000

now_ms() { echo $(( $(date +%s%N) / 1000000 )); }
make_home() {
  local home; home=$(mktemp -d)
  mkdir -p "$home/spool"
  printf '[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerStato=On\r\nServerDir=%s\r\nServerFile=*.txt\r\n' \
    "$home/spool" > "$home/KelmDrev.ini"
  echo "$home"
}
# Until the register's identity is in [Current]: the driver is ready.
wait_ready() { until grep -q '^SN=' "$1/KelmDrev.ini" 2>/dev/null; do sleep 0.005; done; }

echo "== start-up =="
home=$(make_home)
start=$(now_ms)
build/default/src/kelmdrev --headless --home "$home" 2>/dev/null &
pid=$!
wait_ready "$home"
echo "headless, to driver ready     $(( $(now_ms) - start )) ms"
kill -INT $pid; wait $pid || true
rm -rf "$home"
home=$(make_home)
start=$(now_ms)
QT_QPA_PLATFORM=offscreen build/default/src/kelmdrev --home "$home" 2>/dev/null &
pid=$!
wait_ready "$home"
echo "window, to driver ready       $(( $(now_ms) - start )) ms"
kill -TERM $pid; wait $pid 2>/dev/null || true
rm -rf "$home"

echo "== idle and busy driver =="
home=$(make_home)
build/default/src/kelmdrev --headless --home "$home" 2>/dev/null &
pid=$!
wait_ready "$home"
sleep 2
ticks() { awk '{print $14 + $15}' "/proc/$pid/stat"; }
rss() { awk '/VmRSS/ {print $2}' "/proc/$pid/status"; }
idle_rss=$(rss)
before=$(ticks)
sleep "$idle_seconds"
after=$(ticks)
hz=$(getconf CLK_TCK)
for i in $(seq 100); do
  printf '3/S/ARTICOLO//1/1.00/1/4/\r\n3/S/ARTICOLO//1/2.00/2/4/\r\n5/1/0.00/////\r\n' > "$home/spool/r$i.part"
  mv "$home/spool/r$i.part" "$home/spool/r$i.txt"
done
sleep 1
busy_rss=$(rss)
kill -INT $pid; wait $pid || true
rm -rf "$home"
awk -v t=$((after - before)) -v hz="$hz" -v s="$idle_seconds" -v i="$idle_rss" -v b="$busy_rss" 'BEGIN {
  cpu = t / hz
  printf "idle CPU over %d s          %.2f s (%.3f%% of one core)\n", s, cpu, 100 * cpu / s
  printf "idle CPU per hour (extrap.)  %.1f s\n", cpu * 3600 / s
  printf "memory, idle / busy          %.1f MB / %.1f MB resident\n", i / 1024, b / 1024
}'
