#!/usr/bin/env bash
# Builds Aerolume and opens its window.
#
# Usage: scripts/run.sh [--simulator [LAT LON]]
#   (no option)   the live sky from the community networks, with your own settings
#   --simulator   no internet needed: starts the local sky simulator and points Aerolume at it, with
#                 settings in a private temporary folder and the home set to LAT LON (default Seattle)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$root/build-run"

simulator=0
if [ "${1:-}" = "--simulator" ]; then
    simulator=1
    shift
fi
lat="${1:-47.6062}"
lon="${2:--122.3321}"

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DAEROLUME_BUILD_TESTS=OFF -DAEROLUME_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target aerolume aerolume-cli aerolume-skysim

if [ "$simulator" -eq 0 ]; then
    exec "$build/app/aerolume"
fi

demo="$(mktemp -d /tmp/aerolume-demo.XXXXXX)"
export XDG_CONFIG_HOME="$demo/config" XDG_DATA_HOME="$demo/data" XDG_STATE_HOME="$demo/state" \
       XDG_CACHE_HOME="$demo/cache" XDG_RUNTIME_DIR="$demo/runtime"
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
cleanup() {
    [ -n "${sim_pid:-}" ] && kill "$sim_pid" 2>/dev/null || true
    rm -rf "$demo"
}
trap cleanup EXIT

# The simulator prints the environment lines that point Aerolume at it.
"$build/tools/skysim/aerolume-skysim" --port 0 --lat "$lat" --lon "$lon" >"$demo/skysim.env" &
sim_pid=$!
for _ in $(seq 100); do
    grep -q "listening" "$demo/skysim.env" 2>/dev/null && break
    sleep 0.1
done
# shellcheck disable=SC1090
source <(grep '^export ' "$demo/skysim.env")
echo "Simulated sky at $AEROLUME_PRIMARY_FEED_URL"
"$build/tools/cli/aerolume-cli" home set "$lat" "$lon" "Home" >/dev/null
"$build/app/aerolume"
