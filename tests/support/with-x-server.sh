#!/bin/sh
# Runs a test under an X server of its own (Xvfb), for what only X tells a program, such as a window
# being minimised. Where no X server can start, the test runs offscreen, is told so, and skips.
dir=$(mktemp -d) || exit 1
trap 'rm -rf "$dir"' EXIT
if command -v Xvfb >/dev/null 2>&1; then
    Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp 3>"$dir/display" 2>"$dir/xvfb.log" &
    server=$!
    # Xvfb writes its display number once it accepts connections.
    tries=0
    while [ ! -s "$dir/display" ] && [ $tries -lt 100 ] && kill -0 $server 2>/dev/null; do
        sleep 0.05
        tries=$((tries + 1))
    done
    if [ -s "$dir/display" ]; then
        DISPLAY=":$(tr -d '\n' <"$dir/display")" QT_QPA_PLATFORM=xcb "$@"
        status=$?
        kill $server 2>/dev/null
        wait $server 2>/dev/null
        exit $status
    fi
    kill $server 2>/dev/null
fi
echo "with-x-server: no X server could start; the test skips" >&2
AEROLUME_NO_X_SERVER=1 QT_QPA_PLATFORM=offscreen "$@"
