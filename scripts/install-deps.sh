#!/usr/bin/env bash
# Installs the Debian 12 packages Aerolume needs to build, run and test. Safe to run again: it does
# nothing when everything is already there. Needs root (or sudo).
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config git
    qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools qt6-tools-dev qt6-tools-dev-tools
    qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-layouts qml6-module-qtquick-templates
    qml6-module-qtquick-window qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qttest
    libgl-dev libsimdjson-dev libgtest-dev libbenchmark-dev qt6-svg-dev
    qt6-positioning-dev qml6-module-qtpositioning libqt6positioning6-plugins qt6-charts-dev qml6-module-qtcharts
    clang libclang-rt-14-dev dbus curl xvfb
    qt6-multimedia-dev gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-pulseaudio pulseaudio
    appstream desktop-file-utils dpkg-dev xdg-utils qml6-module-qt-labs-platform
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
