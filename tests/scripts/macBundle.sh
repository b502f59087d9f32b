#!/usr/bin/env bash
# Tests that the scripts of packaging/macos make the bundle, sign it from the inside out, and fail if something is missing.
# The system's tools are stand-ins that log their arguments.
# shellcheck disable=SC2016  # the stand-ins expand their bodies
set -euo pipefail
scripts=$PWD/packaging/macos
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tools=$work/tools
build=$work/build
app=$work/out/tarnik.app
export LOG=$work/log WORK=$work
failures=0

complain() {
    echo "$*"
    failures=$((failures + 1))
}

# tool NAME [BODY]
tool() {
    printf '#!/bin/bash\necho "%s $*" >>"$LOG"\n%s\n' "$1" "${2-}" >"$tools/$1"
    chmod +x "$tools/$1"
}

# refuses TEXT COMMAND...: the command must fail and print TEXT.
refuses() {
    local text=$1 output
    shift
    if output=$("$@" 2>&1); then
        complain "succeeded instead of printing '$text': $*"
    elif ! grep -qF -- "$text" <<<"$output"; then
        complain "didn't print '$text' but: $output"
    fi
}

sparkle=$work/Sparkle.framework/Versions
mkdir -p "$tools" "$build/app" "$build/macos" "$work/out" "$sparkle/B/XPCServices/Downloader.xpc" "$sparkle/B/Updater.app"
for name in bash basename cat chmod cp dirname find grep head install ln mkdir mktemp rm sed sort tail tee touch tr; do
    ln -s "$(command -v "$name")" "$tools/$name"
done
for file in app/tarnik macos/Info.plist crypto driver; do : >"$build/$file"; done
touch "$sparkle/B/Autoupdate"
ln -s B "$sparkle/Current"
PATH=$tools

# The message names each missing part.
echo 'TARNIK_DEV_BUILD:BOOL=ON' >"$build/CMakeCache.txt"
refuses "development build" "$scripts/bundle.sh" "$build" "$app"
cat >"$build/CMakeCache.txt" <<END
TARNIK_DEV_BUILD:BOOL=OFF
TARNIK_DRIVER:FILEPATH=$build/driver
TARNIK_SPARKLE:PATH=$work/Sparkle.framework
OPENSSL_CRYPTO_LIBRARY:FILEPATH=$build/crypto
TARNIK_OLDEST_MACOS:STRING=13.0
END
refuses "brew install qt" "$scripts/bundle.sh" "$build" "$app"

tool macdeployqt 'mkdir -p "$1/Contents/PlugIns"; : >"$1/Contents/PlugIns/libqcocoa.dylib"'
tool otool 'case "$1 $2" in
    "-l "*MacOS/tarnik) echo "Load command 1"; echo "         path /opt/x/lib (offset 12)"; echo "    minos 13.0" ;;
    "-l "*libqcocoa.dylib) echo "Load command 1"; echo "    minos $(cat "$WORK/minos")" ;;
    "-L "*libqcocoa.dylib) printf "\t%s (compatibility version 1)\n" "$(cat "$WORK/needs")" ;;
esac'
tool install_name_tool
tool plutil
tool ditto 'cp -R "${@: -2:1}" "${@: -1}"'
tool rsvg-convert ': >"$6"'
tool iconutil ': >"$4"'
tool security 'echo "  1) 0123AB \"Developer ID Application: Ada (TEAM)\""'
tool codesign 'echo "Authority=${AUTHORITY-Developer ID Application: Ada}"'
tool hdiutil ': >"${@: -1}"'
tool xcrun '[[ $1 != notarytool ]] || printf "  id: 77\n  status: %s\n" "${STATUS-Accepted}"'

# Code that doesn't run on other Macs is refused.
echo /usr/lib/libSystem.B.dylib >"$work/needs"
echo 14.2 >"$work/minos"
refuses "libqcocoa.dylib needs macOS 14.2" "$scripts/bundle.sh" "$build" "$app"
rm -r "$app"
echo 12.0 >"$work/minos"
echo /opt/x/lib/libb.dylib >"$work/needs"
refuses "libqcocoa.dylib needs /opt/x/lib/libb.dylib" "$scripts/bundle.sh" "$build" "$app"
rm -r "$app"

echo @rpath/libb.dylib >"$work/needs"
"$scripts/bundle.sh" "$build" "$app" >/dev/null || complain "the bundle isn't made"
for file in MacOS/tarnik Info.plist Resources/{cua-driver,tarnik.icns,MenuBarIcon@2x.png} \
    Frameworks/{libcrypto.3.dylib,Sparkle.framework/Versions/B/Autoupdate}; do
    [[ -f $app/Contents/$file ]] || complain "$file isn't in the bundle"
done
grep -q "install_name_tool -delete_rpath /opt/x/lib" "$LOG" || complain "the build machine's folder is still in the program"
: >"$LOG"
refuses "has no signing identity 'Developer ID'" "$scripts/sign.sh" "$app" "Developer ID"
! grep -q "codesign --force" "$LOG" || complain "signed without an identity"
"$scripts/sign.sh" "$app" "Developer ID Application: Ada (TEAM)" >/dev/null
signed=$(sed -n "s|^codesign --force .* $app||p" "$LOG")
expected='/Contents/PlugIns/libqcocoa.dylib /Contents/Frameworks/libcrypto.3.dylib
/Contents/Frameworks/Sparkle.framework/Versions/Current/XPCServices/Downloader.xpc
/Contents/Frameworks/Sparkle.framework/Versions/Current/Autoupdate
/Contents/Frameworks/Sparkle.framework/Versions/Current/Updater.app
/Contents/Frameworks/Sparkle.framework
/Contents/Resources/cua-driver
'
libraries=$(head -2 <<<"$signed" | sort -r | tr '\n' ' ')
[[ "${libraries% }"$'\n'"$(tail -n +3 <<<"$signed")"$'\n' == "$expected" ]] || complain "signed in this order: $signed"
[[ $(grep -c -- '--options runtime --timestamp' "$LOG") == 8 ]] || complain "not all signatures are for the hardened runtime"
rm "$app/Contents/Frameworks/Sparkle.framework/Versions/B/Autoupdate"
refuses "this Sparkle has no Autoupdate" "$scripts/sign.sh" "$app" -

"$scripts/dmg.sh" "$app" "$work/out/tarnik.dmg" - >/dev/null || complain "no disk image"
: >"$LOG"
AUTHORITY=none refuses "Developer ID" "$scripts/notarise.sh" "$work/out/tarnik.dmg" profile
STATUS=Invalid refuses "notarytool log 77" "$scripts/notarise.sh" "$app" profile
! grep -q staple "$LOG" || complain "attached a ticket without approval"
"$scripts/notarise.sh" "$work/out/tarnik.dmg" profile >/dev/null 2>&1 || complain "an accepted image fails"
grep -q "xcrun stapler staple $work/out/tarnik.dmg" "$LOG" || complain "the ticket isn't attached"

exit $((failures > 0))
