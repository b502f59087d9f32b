#!/usr/bin/env bash
# notarise.sh [--dry-run] FILE PROFILE: submits a signed tarnik.app or disk image to Apple, and attaches the ticket.
#
# `xcrun notarytool store-credentials PROFILE` stores the profile in the keychain. Notarise the application before you
# make the image, then the image.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
if [[ ${1-} == --dry-run ]]; then
    dryRun=yes
    shift
fi
(($# == 2)) || fail "usage: notarise.sh [--dry-run] FILE PROFILE"
file=$1
profile=$2
case $file in
    *.app) needApp "$file" ;;
    *.dmg) [[ -f $file || $dryRun == yes ]] || fail "$file doesn't exist: run dmg.sh" ;;
    *) fail "$file is neither an application nor a disk image" ;;
esac
for tool in xcrun ditto codesign; do need "$tool" "macOS and Xcode"; done
if [[ $dryRun == no ]]; then
    signature=$(codesign --display --verbose=2 "$file" 2>&1) || fail "$file isn't signed"
    [[ $signature == *"Authority=Developer ID Application"* ]] ||
        fail "$file isn't signed with a Developer ID, which Apple requires"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sent=$file
if [[ $file == *.app ]]; then
    sent=$work/tarnik.zip
    run ditto -c -k --keepParent "$file" "$sent"
fi
submission=(xcrun notarytool submit "$sent" --keychain-profile "$profile" --wait)
if [[ $dryRun == yes ]]; then
    run "${submission[@]}"
else
    # notarytool exits with status 0 for a rejected file too.
    said=$("${submission[@]}" 2>&1 | tee /dev/stderr) ||
        fail "notarytool couldn't submit it; is there a profile '$profile' (xcrun notarytool store-credentials)?"
    if [[ $said != *"status: Accepted"* ]]; then
        id=$(sed -n 's/^ *id: //p' <<<"$said" | head -1)
        fail "Apple rejected it; for the reason run: xcrun notarytool log $id --keychain-profile $profile"
    fi
fi
run xcrun stapler staple "$file"
run xcrun stapler validate "$file"
