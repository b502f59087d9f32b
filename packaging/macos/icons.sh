#!/usr/bin/env bash
# icons.sh FOLDER: makes the status item's image from menubar.svg and the application's icon from mark.svg.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
(($# == 1)) || fail "usage: icons.sh FOLDER"
folder=$1
need rsvg-convert "librsvg (brew install librsvg)"
need iconutil "Xcode's command line tools (xcode-select --install)"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# draw SVG PIXELS FILE
draw() { rsvg-convert --width "$2" --height "$2" --output "$3" "$1"; }

# Black with transparency: macOS uses the shape and colours it.
draw "$here/../icons/menubar.svg" 18 "$folder/MenuBarIcon.png"
draw "$here/../icons/menubar.svg" 36 "$folder/MenuBarIcon@2x.png"

# Icons of macOS have a wide margin: the tile is 824 of 1024 points wide.
"$here/../icons/compose.sh" "$here/../icons/tile.svg.in" |
    sed 's/viewBox="0 0 128 128"/viewBox="-10.6 -10.6 149.2 149.2"/' >"$work/tile.svg"
grep -q 'viewBox="-10.6' "$work/tile.svg" || fail "tile.svg.in isn't drawn in a square of 128"
mkdir "$work/tarnik.iconset"
for size in 16 32 128 256 512; do
    draw "$work/tile.svg" "$size" "$work/tarnik.iconset/icon_${size}x$size.png"
    draw "$work/tile.svg" $((2 * size)) "$work/tarnik.iconset/icon_${size}x$size@2x.png"
done
iconutil --convert icns --output "$folder/tarnik.icns" "$work/tarnik.iconset"
