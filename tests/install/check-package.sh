#!/bin/sh
# Builds the Debian package of a build and checks that it would install and run on a fresh Debian 12:
# apt resolves every dependency from the archive with nothing installed yet, and every QML module and
# Qt plugin the unpacked programs load while they check themselves belongs to a package apt would bring
# in. Exits 77 (skipped) when the machine has no apt package lists or no dpkg-shlibdeps.
#
#   check-package.sh BUILD_DIR
set -eu

build=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAIL: $*" >&2
    exit 1
}
skip() {
    echo "SKIPPED: $*"
    exit 77
}

command -v dpkg-shlibdeps >/dev/null 2>&1 || skip "dpkg-shlibdeps is not installed (package dpkg-dev)"
ls /var/lib/apt/lists/*_Packages* >/dev/null 2>&1 || skip "apt has no package lists; run apt-get update"

(cd "$work" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/out" >"$work/cpack.log" 2>&1) \
    || { cat "$work/cpack.log" >&2; fail "cpack -G DEB failed"; }
deb=$(ls "$work"/out/aerolume_*.deb 2>/dev/null | head -n1)
[ -n "$deb" ] || fail "cpack made no aerolume_*.deb"
echo "package: $(basename "$deb")"
echo "Depends: $(dpkg-deb -f "$deb" Depends)"
dpkg-deb -c "$deb" >"$work/contents.txt"
grep -q ' ./usr/bin/aerolume$' "$work/contents.txt" || fail "the package holds no /usr/bin/aerolume"

# A dpkg status with nothing in it: apt plans the install as on a machine that has none of our
# dependencies yet.
: >"$work/status"
apt-get install --simulate --no-install-recommends -o Dir::State::status="$work/status" "$deb" >"$work/plan.txt" 2>&1 \
    || { cat "$work/plan.txt" >&2; fail "apt cannot install the package on a fresh system"; }
grep '^Inst ' "$work/plan.txt" | awk '{print $2}' | sort -u >"$work/brought-in.txt"
grep -qx aerolume "$work/brought-in.txt" || fail "apt's plan does not install aerolume"
echo "apt would install $(wc -l <"$work/brought-in.txt") packages"

dpkg -x "$deb" "$work/root"
mkdir -p "$work/home/config" "$work/home/data" "$work/home/state" "$work/home/cache" "$work/home/runtime"
chmod 700 "$work/home/runtime"
# A sanitizer build keeps its sanitizer settings (a leak in Qt's own start-up is not ours).
run() {
    env -i PATH=/usr/bin:/bin HOME="$work/home" LANG=C.UTF-8 QT_QPA_PLATFORM=offscreen \
        ${ASAN_OPTIONS:+ASAN_OPTIONS="$ASAN_OPTIONS"} ${UBSAN_OPTIONS:+UBSAN_OPTIONS="$UBSAN_OPTIONS"} \
        QML_IMPORT_TRACE=1 QT_DEBUG_PLUGINS=1 DBUS_SESSION_BUS_ADDRESS=disabled: \
        XDG_CONFIG_HOME="$work/home/config" XDG_DATA_HOME="$work/home/data" XDG_STATE_HOME="$work/home/state" \
        XDG_CACHE_HOME="$work/home/cache" XDG_RUNTIME_DIR="$work/home/runtime" \
        AEROLUME_PRIMARY_FEED_URL=http://127.0.0.1:9 AEROLUME_FALLBACK_FEED_URL=http://127.0.0.1:9 \
        AEROLUME_TILE_URL_STANDARD='http://127.0.0.1:9/{z}/{x}/{y}.png' \
        AEROLUME_TILE_URL_IMAGERY='http://127.0.0.1:9/{z}/{y}/{x}' \
        AEROLUME_TILE_URL_LABELS='http://127.0.0.1:9/{z}/{y}/{x}' \
        "$@"
}
for program in aerolume aerolume-widgets; do
    run "$work/root/usr/bin/$program" --self-test >"$work/$program.log" 2>&1 \
        || { tail -n 30 "$work/$program.log" >&2; fail "the unpacked $program fails its self-test"; }
    # The QML modules read by the import trace, and the libraries the plugin loader really loaded (it
    # also looks at the metadata of every plugin present, which says nothing).
    grep -o '/usr/lib/[^ "]*/qt6/qml/[^ "]*qmldir' "$work/$program.log" >>"$work/loaded.txt" || true
    grep '" loaded library$' "$work/$program.log" | grep -o '/usr/lib/[^ "]*\.so' >>"$work/loaded.txt" || true
done
[ -s "$work/loaded.txt" ] || fail "no QML module or plugin was seen loading"

missing=""
for file in $(sort -u "$work/loaded.txt"); do
    [ -e "$file" ] || continue
    owner=$(dpkg -S "$file" 2>/dev/null | head -n1 | cut -d: -f1)
    [ -n "$owner" ] || continue # not from a package: the build machine's own files
    grep -qx "$owner" "$work/brought-in.txt" || missing="$missing $owner($file)"
done
[ -z "$missing" ] || fail "loaded at run time but not brought in by the package's dependencies:$missing"
echo "every QML module and plugin the programs load comes with the package's dependencies"
