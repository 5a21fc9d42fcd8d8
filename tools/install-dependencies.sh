#!/usr/bin/env bash
# Installs what is missing of the Debian packages for the purposes named; asks nothing, does nothing when all is there.
#
#   tools/install-dependencies.sh [build] [run] [demo] [test] [bench] [lint] [pictures] [package]
set -euo pipefail

build=(
    ca-certificates ccache cmake g++ git ninja-build pkg-config
    libatspi2.0-dev libcli11-dev libdbus-1-dev libfmt-dev libfontconfig-dev libglib2.0-dev libharfbuzz-dev libicu-dev
    libsqlite3-dev libsqlitecpp-dev libsystemd-dev nlohmann-json3-dev qt6-base-dev qt6-l10n-tools qt6-svg-dev
    libxcb1-dev libxcb-record0-dev libxcb-res0-dev libxcb-shape0-dev libxcb-xfixes0-dev libxcb-xinput-dev
    libxcb-xkb-dev libxcb-xtest0-dev libxkbcommon-dev libxkbcommon-x11-dev
)
run=(at-spi2-core fonts-dejavu-core fonts-noto-color-emoji libqt6svg6 qt6-translations-l10n)
demo=(
    dbus dconf-gsettings-backend gir1.2-atspi-2.0 imagemagick libglib2.0-bin mousepad openbox python3 python3-gi
    x11-utils x11-xkb-utils xclip xdotool xvfb
)
test=(
    chromium clang-format desktop-file-utils featherpad firefox-esr gir1.2-gtk-3.0 gnome-text-editor libgmock-dev
    libgtest-dev xterm
)
bench=(fzf libxcb-damage0-dev sqlite3)
lint=(clang-tidy-16)
package=(appstream desktop-file-utils dpkg-dev file lintian man-db)
pictures=(ffmpeg fonts-inter picom)

wanted=()
for purpose in "$@"; do
    declare -n packages="$purpose"
    wanted+=("${packages[@]}")
done

# A package may be known for several architectures, with a word for each.
is_installed() {
    [[ " $(dpkg-query -W -f '${db:Status-Status} ' "$1" 2>/dev/null)" == *" installed "* ]]
}

missing=()
for package in "${wanted[@]}"; do
    is_installed "$package" || missing+=("$package")
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
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300)
# A foreign source that does not answer is no reason to stop: the installation says what it cannot find.
"${apt[@]}" update || true
"${apt[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
