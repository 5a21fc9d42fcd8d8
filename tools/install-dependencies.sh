#!/usr/bin/env bash
# Installs what is missing of the Debian packages for the purposes named; asks nothing, does nothing when all is there.
#
#   tools/install-dependencies.sh [build] [run] [demo] [test] [bench]
set -euo pipefail

build=(
    ca-certificates ccache cmake g++ git ninja-build pkg-config
    libatspi2.0-dev libcli11-dev libfmt-dev libfontconfig-dev libfreetype-dev libharfbuzz-dev libicu-dev
    libqt6svg6-dev libsqlite3-dev libsqlitecpp-dev nlohmann-json3-dev qt6-base-dev
    libx11-dev libxcb1-dev libxcb-damage0-dev libxcb-randr0-dev libxcb-record0-dev libxcb-res0-dev libxcb-xfixes0-dev
    libxcb-xinput-dev libxcb-xkb-dev libxcb-xtest0-dev libxkbcommon-dev libxkbcommon-x11-dev
)
run=(at-spi2-core fonts-dejavu-core fonts-noto-color-emoji)
demo=(
    adwaita-icon-theme dbus dbus-x11 dconf-gsettings-backend gir1.2-atspi-2.0 gsettings-desktop-schemas imagemagick
    libatk-adaptor libglib2.0-bin mousepad openbox procps python3 python3-gi x11-utils x11-xkb-utils
    x11-xserver-utils xauth xclip xdotool xvfb
)
test=(
    clang-format clang-tidy featherpad firefox-esr gnome-text-editor libgmock-dev libgtest-dev picom sqlite3 xterm
)
bench=(fzf libbenchmark-dev sqlite3)

wanted=()
for purpose in "$@"; do
    declare -n packages="$purpose"
    wanted+=("${packages[@]}")
done

missing=()
for package in "${wanted[@]}"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "Missing packages: ${missing[*]}" >&2
        echo "Install them as root (apt-get install ${missing[*]}), or install sudo, and start again." >&2
        exit 1
    }
    as_root=(sudo)
fi
echo "Installing ${#missing[@]} packages: ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
