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
for name in awk bash basename cat chmod cp dirname find grep head install ln mkdir mktemp mv od realpath rm sed sort tail tee touch tr; do
    ln -s "$(command -v "$name")" "$tools/$name"
done
# The first bytes of a program or library.
for file in "$build"/{app/tarnik,crypto,driver} "$sparkle/B/"{Autoupdate,Sparkle}; do printf '\xcf\xfa\xed\xfe' >"$file"; done
: >"$build/macos/Info.plist"
chmod +x "$build/app/tarnik"
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

# macBundleCheck.sh tests the check itself with real files.
tool macdeployqt 'mkdir -p "$1/Contents/PlugIns"; cp "$1/Contents/MacOS/tarnik" "$1/Contents/PlugIns/libqcocoa.dylib"'
tool otool 'printf "Load command 1\n  cmd LC_RPATH\n path /opt/x/lib (offset 12)\n cmd LC_LOAD_DYLIB\n name %s (offset 24)\n" \
    "$(cat "$WORK/needs")"; printf "  cmd LC_BUILD_VERSION\n minos 13.0\n"'
tool lipo 'echo "arm64 x86_64"'
tool install_name_tool
tool plutil
tool ditto 'cp -R "${@: -2:1}" "${@: -1}"'
tool rsvg-convert ': >"$6"'
tool iconutil ': >"$4"'
tool security 'echo "  1) 0123AB \"Developer ID Application: Ada (TEAM)\""'
tool codesign 'echo "Authority=${AUTHORITY-Developer ID Application: Ada}"'
tool hdiutil ': >"${@: -1}"'
tool xcrun '[[ $1 != notarytool ]] || printf "  id: 77\n  status: %s\n" "${STATUS-Accepted}"'

# The bundle is made, but refused for a library of the build machine.
echo /opt/x/lib/libb.dylib >"$work/needs"
refuses "libqcocoa.dylib (x86_64) needs /opt/x/lib/libb.dylib" "$scripts/bundle.sh" "$build" "$app"
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
framework=/Contents/Frameworks/Sparkle.framework
inner=("$framework/Versions/B/"{Autoupdate,Updater.app,XPCServices/Downloader.xpc})
expected=$(printf '%s\n' "${inner[@]}" "$framework" /Contents/{PlugIns/libqcocoa,Frameworks/libcrypto.3}.dylib \
    /Contents/Resources/cua-driver)
[[ $(sort <<<"$signed") == "$(sort <<<"$expected")" ]] || complain "signed these files: $signed"
for part in "${inner[@]}"; do
    [[ $signed$'\n' == *"$part"$'\n'*"$framework"$'\n'* ]] || complain "$part was signed after its framework"
done
[[ $(grep '^codesign --force' "$LOG" | tail -n 1) == *" $app" ]] || complain "the application wasn't signed last"
[[ $(grep -c -- '--options runtime --timestamp' "$LOG") == 8 ]] || complain "not all signatures are for the hardened runtime"
# A dry run prints the same commands, on a system without these tools too.
mkdir "$work/away"
mv "$tools"/{codesign,hdiutil,ditto,xcrun,security} "$work/away"
planned=$("$scripts/sign.sh" --dry-run "$app" "Ada" | sed -n "s|^codesign --force .* $app||p")
[[ $planned == "$signed" ]] || complain "the dry run has another order: $planned"
[[ $("$scripts/dmg.sh" --dry-run "$app" "$work/out/tarnik.dmg" -) == *ditto*hdiutil*codesign* &&
    $("$scripts/notarise.sh" --dry-run "$app" profile) == *ditto*submit*staple* ]] || complain "a dry run lacks a step"
[[ ! -e $work/out/tarnik.dmg ]] || complain "the dry run made an image"
refuses "codesign is missing; it is part of macOS" "$scripts/sign.sh" "$app" -
mv "$work/away"/* "$tools"
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
