#!/usr/bin/env bash
# Builds Aerolume and starts what exists of it so far: the local sky simulator and `aerolume-cli watch`,
# the headless flight store, following the simulated sky around a home point.
#
# Usage: scripts/run.sh [--live] [LAT LON]
#   --live    follow the real community networks instead of the simulator
#   LAT LON   the home point (default: Seattle, 47.6062 -122.3321)
# Settings and files of this demo live in a private folder, so your own are never touched.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$root/build-run"

live=0
if [ "${1:-}" = "--live" ]; then
    live=1
    shift
fi
lat="${1:-47.6062}"
lon="${2:--122.3321}"

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DAEROLUME_BUILD_TESTS=OFF -DAEROLUME_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target aerolume-cli aerolume-skysim

demo="$(mktemp -d /tmp/aerolume-demo.XXXXXX)"
export XDG_CONFIG_HOME="$demo/config" XDG_DATA_HOME="$demo/data" XDG_STATE_HOME="$demo/state" XDG_RUNTIME_DIR="$demo/runtime"
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"

cleanup() {
    [ -n "${sim_pid:-}" ] && kill "$sim_pid" 2>/dev/null || true
    rm -rf "$demo"
}
trap cleanup EXIT

if [ "$live" -eq 0 ]; then
    # The simulator prints the environment lines that point Aerolume at it.
    "$build/tools/skysim/aerolume-skysim" --port 0 --lat "$lat" --lon "$lon" >"$demo/skysim.env" &
    sim_pid=$!
    for _ in $(seq 50); do
        grep -q "listening" "$demo/skysim.env" 2>/dev/null && break
        sleep 0.1
    done
    # shellcheck disable=SC1091
    source <(grep '^export ' "$demo/skysim.env")
    echo "Simulated sky at $AEROLUME_PRIMARY_FEED_URL"
fi

cli="$build/tools/cli/aerolume-cli"
"$cli" home set "$lat" "$lon" "Home" >/dev/null
"$cli" nearby --lat "$lat" --lon "$lon" --radius 25
echo
echo "Following the sky every 5 seconds (Ctrl+C to stop):"
"$cli" watch
