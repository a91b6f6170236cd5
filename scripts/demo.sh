#!/usr/bin/env bash
# The main job on a machine with no register: installs what is missing,
# builds, starts driver mode on the built-in virtual ECR (in the window when
# there is a display, headless otherwise), drops a test receipt into the
# spool folder and shows it as the register printed it.
# The driver keeps running: drop more receipt files into demo/spool, and
# stop it with Ctrl+C.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kelmdrev ecrsim

demo="$PWD/demo"
mkdir -p "$demo/spool"
rm -f "$demo/virtual-ecr-paper.txt" "$demo/virtual-ecr-journal.txt"
printf '[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerStato=On\r\nServerDir=%s\r\nServerFile=scontrino.txt\r\nServerLog=On\r\n' \
  "$demo/spool" > "$demo/KelmDrev.ini"
printf '[exe]\r\n[log]\r\n' > "$demo/FileExt.ini"

# With a display, the window (the receipt prints in its "ECR virtuale"
# panel); without one, driver mode headless.
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  build/default/src/kelmdrev --home "$demo" &
else
  build/default/src/kelmdrev --headless --home "$demo" --verbose &
fi
driver=$!
trap 'kill -INT $driver 2>/dev/null; wait $driver' INT TERM

# The "Scontrino" test receipt, as a point-of-sale program would drop it.
printf '%s\r\n' "3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/" "3/S/REPARTO2//1/25.88/2/10/" \
  "3/S/REPARTO3//1/7.33/3/20/" "4/10.00///0/0/0//" "5/1/0.00/////" > "$demo/spool/scontrino.tmp"
mv "$demo/spool/scontrino.tmp" "$demo/spool/scontrino.txt"

for _ in $(seq 100); do
  grep -q 'SCONTRINO N' "$demo/virtual-ecr-paper.txt" 2>/dev/null && break
  sleep 0.1
done
echo
echo "---- the virtual ECR printed ($demo/virtual-ecr-paper.txt) ----"
cat "$demo/virtual-ecr-paper.txt"
echo "----"
echo "Driver running. Drop receipt files named scontrino.txt into $demo/spool; Ctrl+C (or Esci) stops."
wait $driver
