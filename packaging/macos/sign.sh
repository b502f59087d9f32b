#!/usr/bin/env bash
# sign.sh APP IDENTITY: signs everything in tarnik.app, from the inside out, for the hardened runtime.
#
# IDENTITY is a "Developer ID Application" certificate of the keychain. A dash signs for this Mac alone: enough to
# try the program out, but each such build is another application to the privacy switches.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
(($# == 2)) || fail "usage: sign.sh APP IDENTITY"
app=$1
identity=$2
needApp "$app"
need codesign "macOS"

options=(--force --sign "$identity")
if [[ $identity != - ]]; then
    needIdentity "$identity"
    options+=(--options runtime --timestamp)
fi
sign() { codesign "${options[@]}" "$@"; }

# A signature covers those of what is inside, so that the outermost comes last.
contents=$app/Contents
while IFS= read -r -d '' library; do sign "$library"; done < <(find "$contents" -type f -name '*.dylib' -print0)
if [[ -e $contents/Frameworks/Sparkle.framework ]]; then
    sparkle=$contents/Frameworks/Sparkle.framework/Versions/Current
    for part in "$sparkle"/XPCServices/*.xpc "$sparkle/Autoupdate" "$sparkle/Updater.app"; do
        if [[ $part == *'/*.xpc' ]]; then continue; fi  # it can do without them
        # What is left as Sparkle's own would pass the check below, and not work.
        [[ -e $part ]] || fail "this Sparkle has no ${part##*/} at $part; it wants another order of signing"
        # Its downloader brings an entitlement of its own.
        sign --preserve-metadata=entitlements "$part"
    done
fi
for framework in "$contents"/Frameworks/*.framework; do
    if [[ -e $framework ]]; then sign "$framework"; fi
done
sign --preserve-metadata=entitlements "$contents/Resources/cua-driver"
sign --entitlements "$here/tarnik.entitlements" "$app"

codesign --verify --deep --strict --verbose=2 "$app"
codesign --display --requirements - "$app"
