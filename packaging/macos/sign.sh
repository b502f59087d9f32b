#!/usr/bin/env bash
# sign.sh APP IDENTITY: signs everything in tarnik.app for the hardened runtime.
#
# IDENTITY is a "Developer ID Application" certificate in the keychain. A dash makes an ad-hoc signature for this Mac
# only; the privacy settings of macOS treat each such build as another application.
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

# A signature covers the signatures inside, so the outermost is made last.
contents=$app/Contents
while IFS= read -r -d '' library; do sign "$library"; done < <(find "$contents" -type f -name '*.dylib' -print0)
if [[ -e $contents/Frameworks/Sparkle.framework ]]; then
    sparkle=$contents/Frameworks/Sparkle.framework/Versions/Current
    for part in "$sparkle"/XPCServices/*.xpc "$sparkle/Autoupdate" "$sparkle/Updater.app"; do
        if [[ $part == *'/*.xpc' ]]; then continue; fi  # the services are optional
        # A part that keeps Sparkle's own signature passes the check below but doesn't work.
        [[ -e $part ]] || fail "this Sparkle has no ${part##*/} at $part; sign.sh must be adapted"
        # The downloader has an entitlement of its own.
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
