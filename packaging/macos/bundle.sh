#!/usr/bin/env bash
# bundle.sh BUILD APP: makes tarnik.app from a release build and the libraries that it needs.
#
# It uses the configuration of BUILD: TARNIK_DRIVER (required), TARNIK_SPARKLE, and the settings of the Info.plist.
# The bundle isn't signed; sign.sh does that.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
(($# == 2)) || fail "usage: bundle.sh BUILD APP"
build=$1
app=$2
contents=$app/Contents

[[ -f $build/CMakeCache.txt ]] || fail "$build is not a build folder"
[[ $app == *.app ]] || fail "$app doesn't end in .app"
[[ ! -e $app ]] || fail "$app already exists"

# configured NAME: prints the value in CMake's cache.
configured() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }

driver=$(configured TARNIK_DRIVER)
sparkle=$(configured TARNIK_SPARKLE)
crypto=$(configured OPENSSL_CRYPTO_LIBRARY)
oldest=$(configured TARNIK_OLDEST_MACOS)
[[ -f $build/app/tarnik ]] || fail "$build has no program: build it first"
[[ $(configured TARNIK_DEV_BUILD) == OFF ]] || fail "$build is a development build, which would never move into place"
[[ -n $driver ]] || fail "the desktop driver is missing: configure with -DTARNIK_DRIVER=<its executable>"
[[ -f $driver ]] || fail "the desktop driver $driver doesn't exist"
[[ -z $sparkle || -d $sparkle ]] || fail "Sparkle's framework $sparkle doesn't exist"
[[ -f $crypto ]] || fail "OpenSSL's library '$crypto' doesn't exist"
need macdeployqt "Qt (brew install qt)"
for tool in otool install_name_tool plutil ditto; do need "$tool" "macOS and Xcode's command line tools"; done

mkdir -p "$contents/MacOS" "$contents/Resources" "$contents/Frameworks"
install -m 755 "$build/app/tarnik" "$contents/MacOS/tarnik"
install -m 644 "$build/macos/Info.plist" "$contents/Info.plist"
plutil -lint -s "$contents/Info.plist"
"$here/icons.sh" "$contents/Resources"
install -m 755 "$driver" "$contents/Resources/cua-driver"

# macdeployqt doesn't find this library, because the program loads it by name at first use.
install -m 755 "$crypto" "$contents/Frameworks/libcrypto.3.dylib"
install_name_tool -id @rpath/libcrypto.3.dylib "$contents/Frameworks/libcrypto.3.dylib"
if [[ -n $sparkle ]]; then ditto "$sparkle" "$contents/Frameworks/Sparkle.framework"; fi
macdeployqt "$app" -verbose=1

# Removes the library folders of the build machine.
otool -l "$contents/MacOS/tarnik" | sed -n 's/^ *path \(.*\) (offset [0-9]*)$/\1/p' | while read -r folder; do
    if [[ $folder == /* ]]; then install_name_tool -delete_rpath "$folder" "$contents/MacOS/tarnik"; fi
done

# Checks that the bundle uses no library of the build machine, and that all its code runs on the oldest supported macOS.
faults=0
while IFS= read -r -d '' file; do
    load=$(otool -l "$file" 2>/dev/null || true)
    # Only Mach-O files have load commands.
    [[ $load == *"Load command"* ]] || continue
    while read -r needs; do
        echo "${file#"$app"/} needs $needs, which other Macs don't have" >&2
        faults=$((faults + 1))
    done < <(otool -L "$file" | sed -n 's/^[[:space:]]\(.*\) (compat.*/\1/p' | grep -E '^/' |
        grep -vE '^/(usr/lib|System)/' || true)
    while read -r least; do
        if [[ $(printf '%s\n%s\n' "$least" "$oldest" | sort -V | tail -1) != "$oldest" ]]; then
            echo "${file#"$app"/} needs macOS $least; the bundle says $oldest" >&2
            faults=$((faults + 1))
        fi
    done < <(sed -n 's/^ *minos //p' <<<"$load" | sort -u)
done < <(find "$contents" -type f -print0)
((faults == 0)) || fail "$faults faults in $app"
echo "made $app; next: $here/sign.sh $app IDENTITY"
