#!/usr/bin/env bash
# sign.sh [--dry-run] APP IDENTITY: signs everything in tarnik.app for the hardened runtime.
#
# IDENTITY is a "Developer ID Application" certificate in the keychain. A dash makes an ad-hoc signature for this Mac
# only; the privacy settings of macOS treat each such build as another application.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
if [[ ${1-} == --dry-run ]]; then
    dryRun=yes
    shift
fi
(($# == 2)) || fail "usage: sign.sh [--dry-run] APP IDENTITY"
app=$1
identity=$2
needApp "$app"
need codesign "macOS"

# The hardened runtime loads no library of another team, and an ad-hoc signature has no team.
options=(--force --sign "$identity")
if [[ $identity != - ]]; then
    needIdentity "$identity"
    options+=(--options runtime --timestamp)
fi
sign() { run codesign "${options[@]}" "$@"; }

# isMainProgram FILE: succeeds if the signature of the enclosing bundle covers the file: X.framework/Versions/A/X, or
# X.app/Contents/MacOS/X.
isMainProgram() {
    local name=${1##*/}
    case $1 in
        */"$name".framework/Versions/*/"$name" | */"$name".*/Contents/MacOS/"$name") return 0 ;;
    esac
    return 1
}

# A part that keeps the signature of Sparkle passes the check below but doesn't work.
sparkle=$app/Contents/Frameworks/Sparkle.framework/Versions/Current
for part in Autoupdate Updater.app; do
    [[ ! -e $sparkle || -e $sparkle/$part ]] || fail "this Sparkle has no $part at $sparkle; sign.sh must be adapted"
done

# A signature covers the signatures inside, so the outermost is made last. -depth lists the content of a folder before the
# folder. The entitlements of programs are kept: Sparkle's downloader has one of its own, and the driver may.
while IFS= read -r -d '' item; do
    case $item in
        *.framework) sign "$item" ;;
        *.app | *.xpc) sign --preserve-metadata=entitlements "$item" ;;
        *)
            if [[ ! -f $item ]] || ! isCode "$item" || isMainProgram "$item"; then continue; fi
            if [[ $item == *.dylib ]]; then sign "$item"; else sign --preserve-metadata=entitlements "$item"; fi
            ;;
    esac
done < <(find "$app/Contents" -depth \( -type f -o -type d \) -print0)
sign --entitlements "$here/tarnik.entitlements" "$app"

run codesign --verify --deep --strict --verbose=2 "$app"
run codesign --display --requirements - "$app"
