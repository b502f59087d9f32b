#!/usr/bin/env bash
# Checks the desktop entry, AppStream data, man page, version and icons of the Linux package.
set -euo pipefail
for tool in desktop-file-validate appstreamcli dpkg-parsechangelog man rsvg-convert; do
    command -v "$tool" >/dev/null || {
        echo "skipped: $tool is missing"
        exit 77
    }
done
linux=packaging/linux
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    echo "$*"
    failures=$((failures + 1))
}

desktop-file-validate $linux/com.tarnik.node.desktop || fail "the desktop entry has faults"
appstreamcli validate --no-net --pedantic $linux/com.tarnik.node.metainfo.xml || fail "the AppStream data has faults"
warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' man --warnings --encoding=UTF-8 --local-file $linux/tarnik.1 2>&1 >/dev/null)
[[ -z $warnings ]] || fail "the man page has faults: $warnings"

# The version must be the same in all files.
version=$(sed -nE 's/^project\(tarnik VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
packaged=$(dpkg-parsechangelog -l $linux/debian/changelog -S Version)
released=$(sed -nE 's/.*<release version="([^"]*)".*/\1/p' $linux/com.tarnik.node.metainfo.xml | head -n 1)
[[ $packaged == "$version" ]] || fail "the program is $version, the changelog's newest $packaged"
[[ $released == "$version" ]] || fail "the program is $version, the newest of the AppStream data $released"

# Each icon must show the mark: without its path the image must differ.
for template in tile symbolic; do
    packaging/icons/compose.sh packaging/icons/$template.svg.in >"$work/whole.svg"
    sed '/<path/d' "$work/whole.svg" >"$work/without.svg"
    for picture in whole without; do rsvg-convert "$work/$picture.svg" --output "$work/$picture.png"; done
    if cmp -s "$work/whole.png" "$work/without.png"; then fail "the icon $template lacks the mark"; fi
done
mkdir "$work/icons"
cp packaging/icons/compose.sh "$work/icons/"
printf '<svg><path d="M0 0"/><path d="M1 1"/></svg>' >"$work/icons/mark.svg"
if "$work/icons/compose.sh" packaging/icons/tile.svg.in >/dev/null 2>&1; then fail "a mark of two paths was accepted"; fi

exit $((failures > 0))
