#!/bin/sh
# Installs a build into a temporary DESTDIR the way a package does (prefix /usr) and checks the tree a
# desktop needs: the programs, the two desktop entries (only the application's handles aerolume: links),
# the icon at every theme size plus the SVG, and the AppStream metadata, then runs the validators the
# distributions run. Exits 77 (skipped) when a validator is not installed, after the other checks.
#
#   check-install.sh BUILD_DIR
set -eu

build=$(cd "$1" && pwd)
dest=$(mktemp -d)
trap 'rm -rf "$dest"' EXIT

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

DESTDIR="$dest" cmake --install "$build" --prefix /usr >"$dest.log" 2>&1 || { cat "$dest.log" >&2; rm -f "$dest.log"; fail "cmake --install failed"; }
rm -f "$dest.log"
root=$dest/usr

for program in aerolume aerolume-widgets aerolume-cli; do
    [ -x "$root/bin/$program" ] || fail "bin/$program is not installed"
done
[ ! -e "$root/bin/aerolume-skysim" ] || fail "the development simulator is installed"
[ ! -e "$root/bin/aerolume-render-icon" ] || fail "the build's icon renderer is installed"

apps=$root/share/applications
for entry in aerolume.desktop aerolume-widgets.desktop; do
    [ -f "$apps/$entry" ] || fail "share/applications/$entry is not installed"
done
handlers=$(grep -l '^MimeType=.*x-scheme-handler/aerolume;' "$apps"/*.desktop | xargs -n1 basename)
[ "$handlers" = "aerolume.desktop" ] || fail "aerolume: links are claimed by: ${handlers:-nothing}"
grep -q '^Exec=aerolume %u$' "$apps/aerolume.desktop" || fail "aerolume.desktop does not pass the link to aerolume"
grep -q '^Exec=aerolume-widgets$' "$apps/aerolume-widgets.desktop" || fail "aerolume-widgets.desktop starts something else"
for entry in aerolume.desktop aerolume-widgets.desktop; do
    grep -q '^Icon=aerolume$' "$apps/$entry" || fail "$entry names another icon"
done

icons=$root/share/icons/hicolor
for size in 16 22 24 32 48 64 128 256 512; do
    png=$icons/${size}x${size}/apps/aerolume.png
    [ -f "$png" ] || fail "no ${size}x${size} icon"
    # A PNG signature, then the IHDR chunk's width and height as big-endian 32-bit numbers.
    signature=$(od -An -tx1 -N8 "$png" | tr -d ' \n')
    [ "$signature" = "89504e470d0a1a0a" ] || fail "${size}x${size}/apps/aerolume.png is not a PNG"
    set -- $(od -An -tu1 -j16 -N8 "$png")
    width=$(( ($1 << 24) + ($2 << 16) + ($3 << 8) + $4 ))
    height=$(( ($5 << 24) + ($6 << 16) + ($7 << 8) + $8 ))
    [ "$width" = "$size" ] && [ "$height" = "$size" ] || fail "${size}x${size} icon is ${width}x${height}"
done
[ -f "$icons/scalable/apps/aerolume.svg" ] || fail "no scalable icon"

metainfo=$root/share/metainfo/org.aerolume.Aerolume.metainfo.xml
[ -f "$metainfo" ] || fail "no AppStream metadata"
grep -q '<launchable type="desktop-id">aerolume.desktop</launchable>' "$metainfo" || fail "metadata does not name aerolume.desktop"
grep -q '<mediatype>x-scheme-handler/aerolume</mediatype>' "$metainfo" || fail "metadata does not provide the aerolume: handler"
grep -q '<content_rating type="oars-1.1"' "$metainfo" || fail "metadata has no OARS 1.1 content rating"
grep -q '<release version="' "$metainfo" || fail "metadata lists no release"

missing=""
if command -v desktop-file-validate >/dev/null 2>&1; then
    for entry in aerolume.desktop aerolume-widgets.desktop; do
        echo "desktop-file-validate $entry"
        desktop-file-validate "$apps/$entry" || fail "desktop-file-validate rejects $entry"
    done
else
    missing="$missing desktop-file-validate (package desktop-file-utils)"
fi
if command -v appstreamcli >/dev/null 2>&1; then
    echo "appstreamcli validate --no-net"
    appstreamcli validate --no-net "$metainfo" || fail "appstreamcli rejects the metadata"
    # The tree as a whole: the metadata's desktop entry and icons where it says they are.
    echo "appstreamcli validate-tree --no-net"
    appstreamcli validate-tree --no-net "$dest/usr" || fail "appstreamcli rejects the installed tree"
else
    missing="$missing appstreamcli (package appstream)"
fi

# What xdg-open asks: which entry handles aerolume: links, once the desktop's cache knows the tree.
if command -v update-desktop-database >/dev/null 2>&1 && command -v xdg-mime >/dev/null 2>&1; then
    update-desktop-database "$apps"
    mkdir -p "$dest/home/data" "$dest/home/config"
    handler=$(env -i PATH=/usr/bin:/bin HOME="$dest/home" XDG_DATA_HOME="$dest/home/data" \
        XDG_CONFIG_HOME="$dest/home/config" XDG_DATA_DIRS="$root/share" xdg-mime query default x-scheme-handler/aerolume)
    echo "xdg-mime: aerolume: links open with ${handler:-nothing}"
    [ "$handler" = "aerolume.desktop" ] || fail "xdg-open would not hand aerolume: links to aerolume.desktop"
else
    missing="$missing update-desktop-database and xdg-mime (packages desktop-file-utils, xdg-utils)"
fi

if [ -n "$missing" ]; then
    echo "SKIPPED: the installed tree is right, but these validators are not installed:$missing"
    exit 77
fi
echo "installed tree and validators: all good"
