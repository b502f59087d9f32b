#!/usr/bin/env bash
# dmg.sh [--dry-run] APP IMAGE IDENTITY: makes a disk image with the signed tarnik.app and a link to the Applications
# folder, and signs the image.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
if [[ ${1-} == --dry-run ]]; then
    dryRun=yes
    shift
fi
(($# == 3)) || fail "usage: dmg.sh [--dry-run] APP IMAGE IDENTITY"
app=$1
image=$2
identity=$3
needApp "$app"
[[ $image == *.dmg ]] || fail "$image doesn't end in .dmg"
[[ ! -e $image ]] || fail "$image already exists"
for tool in hdiutil ditto codesign; do need "$tool" "macOS"; done
run codesign --verify --deep --strict "$app" || fail "$app isn't signed: run sign.sh"
options=(--sign "$identity")
if [[ $identity != - ]]; then
    needIdentity "$identity"
    options+=(--timestamp)
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
run ditto "$app" "$work/tarnik.app"
run ln -s /Applications "$work/Applications"
run hdiutil create -quiet -volname tarnik -fs APFS -format UDZO -srcfolder "$work" "$image"
run codesign "${options[@]}" "$image"
