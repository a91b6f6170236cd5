#!/usr/bin/env bash
# The long fault soak: FILES receipt files (default 2000) through headless
# driver mode against ecrsim on a pseudo-terminal, faults injected at random
# (busy, NAK, CAN, garbage, broken and short answers, paper out, cover open,
# slow bytes, silence, the line unplugged and plugged back). Holds the
# receipt files, the register's journal and the answer files against each
# other. Prints the figures; exit status 0 when nothing was lost or
# duplicated without a trace. SEED changes the random sequence.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kelmdrev ecrsim kelmdrev_soak >/dev/null
build/default/tools/kelmdrev_soak build/default/src/kelmdrev build/default/sim/ecrsim "${FILES:-2000}" "${SEED:-1}" 2>/dev/null
