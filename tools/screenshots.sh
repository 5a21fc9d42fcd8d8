#!/bin/sh
# Makes the pictures of the picker, of the character information, of the icon in the tray and of the preferences under
# docs/images: virtual displays of its own, with a compositor for panels and a window manager for windows.
# Usage: tools/screenshots.sh [PICKER_GALLERY] [FOLDER]
# Without arguments it installs what is missing and builds the gallery first.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
gallery=${1:-$root/build/release/bin/picker_gallery}
info_gallery=$(dirname "$gallery")/info_gallery
folder=${2:-$root/docs/images}
if [ $# -eq 0 ]; then
    cd "$root"
    tools/install-dependencies.sh build run demo pictures
    cmake --preset release >/dev/null
    cmake --build build/release --target picker_gallery info_gallery preferences_gallery tray_gallery
fi

scratch=$(mktemp -d)
running=
finish() {
    for process in $running; do kill "$process" 2>/dev/null || :; done
    rm -rf "$scratch"
}
trap finish EXIT

# start_display WIDTHxHEIGHT: sets DISPLAY.
start_display() {
    mkfifo "$scratch/number"
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$scratch/number" >"$scratch/xvfb.log" 2>&1 &
    running="$running $!"
    read -r number <"$scratch/number"
    rm "$scratch/number"
    DISPLAY=:$number
    export DISPLAY
}

start_compositor() {
    picom --backend xrender --config /dev/null >"$scratch/picom.log" 2>&1 &
    compositor=$!
    running="$running $compositor"
    sleep 1
    kill -0 "$compositor" || { cat "$scratch/picom.log" >&2; exit 1; }
}

# shoot SCENE NAME [OPTION...]: with both palettes.
shoot() {
    scene=$1 name=$2
    shift 2
    for theme in light dark; do
        GLYMA_THEME=$theme "$gallery" --scene "$scene" --output "$folder/picker-$name-$theme.png" "$@"
    done
}

# shoot_info NAME POINTER TEXT: the cards of some characters, with both palettes.
shoot_info() {
    for theme in light dark; do
        GLYMA_THEME=$theme "$info_gallery" --text "$3" --pointer "$2" --output "$folder/character-info-$1-$theme.png"
    done
}

unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY QT_SCALE_FACTOR QT_QPA_PLATFORMTHEME
export QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled:
mkdir -p "$folder"
export XDG_RUNTIME_DIR="$scratch"

start_display 800x720
start_compositor
for scene in results highlight skin-tones nothing-found; do
    shoot "$scene" "$scene"
done

start_display 1000x720
start_compositor
invisible=$(printf '\342\200\215\342\200\256\356\200\200\314\201') # joiner, override, private use, a lone mark
shoot_info one 330,120 '👍🏽'
shoot_info two 200,120 'é→'
shoot_info three 200,60 "👩‍🚀1️⃣🇩🇪"
shoot_info invisible 200,60 "a$invisible"
shoot_info 24-cards 200,60 'The quick brown fox jumps over the lazy dog'
shoot_info left-top 0,0 '❤'
shoot_info right-top 999,0 '❤'
shoot_info left-bottom 0,719 '❤'
shoot_info right-bottom 999,719 '❤'

start_display 1200x1080
start_compositor
export QT_SCALE_FACTOR=1.5
shoot results results-150-percent
shoot_info 150-percent 100,60 "👩‍🚀1️⃣🇩🇪"

QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=2 "$(dirname "$gallery")/tray_gallery" "$folder"

# shoot_preferences SCENE [SUFFIX]: with both palettes.
shoot_preferences() {
    for theme in light dark; do
        GLYMA_THEME=$theme "$(dirname "$gallery")/preferences_gallery" --scene "$1" \
            --output "$folder/preferences-$1${2:-}-$theme.png"
    done
}

# start_window_manager
start_window_manager() {
    openbox >"$scratch/openbox.log" 2>&1 &
    running="$running $!"
    sleep 1
}

export QT_SCALE_FACTOR=1
start_display 1280x1000
start_window_manager
for scene in general general-refused exclusions exclusions-application exclusions-website library library-importing \
    replacements replacement-new permissions permissions-missing advanced advanced-delete debug secure-input-unknown \
    secure-input-running secure-input-system secure-input-stale secure-input-self; do
    shoot_preferences "$scene"
done

export QT_SCALE_FACTOR=2
start_display 2400x2000
start_window_manager
shoot_preferences general -200-percent

# In German, whose words are longer, at a scale between the whole ones.
export LANG=de_DE.UTF-8 LC_ALL=de_DE.UTF-8 LANGUAGE=de GLYMA_THEME=light QT_SCALE_FACTOR=1.5
start_display 1800x1500
start_window_manager
for scene in general general-refused exclusions exclusions-none exclusions-application exclusions-website \
    exclusions-website-refused library library-nothing library-importing replacements replacements-none replacement-new \
    permissions permissions-missing secure-input-unknown secure-input-running secure-input-system secure-input-stale \
    secure-input-self advanced advanced-delete debug; do
    "$(dirname "$gallery")/preferences_gallery" --scene "$scene" --output "$folder/german-preferences-$scene.png"
done
start_display 1500x1080
start_compositor
"$gallery" --scene nothing-found --output "$folder/german-picker-nothing-found.png"
"$gallery" --scene skin-tones --output "$folder/german-picker-skin-tones.png"
"$info_gallery" --text '👍🏽→' --pointer 100,60 --output "$folder/german-character-info.png"
mkdir "$scratch/tray"
QT_QPA_PLATFORM=offscreen "$(dirname "$gallery")/tray_gallery" "$scratch/tray"
cp "$scratch/tray/tray-menu-light.png" "$folder/german-tray-menu.png"
