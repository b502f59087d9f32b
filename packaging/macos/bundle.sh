#!/usr/bin/env bash
# bundle.sh BUILD APP: puts tarnik.app together from a release build, with all that it needs of other projects.
#
# What goes in is what BUILD was configured with: TARNIK_DRIVER (needed), TARNIK_SPARKLE, the settings of the
# Info.plist. The result isn't signed: sign.sh is next.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
(($# == 2)) || fail "usage: bundle.sh BUILD APP"
build=$1
app=$2
contents=$app/Contents

[[ -f $build/CMakeCache.txt ]] || fail "$build is no build folder"
[[ $app == *.app ]] || fail "$app doesn't end in .app"
[[ ! -e $app ]] || fail "$app is there already"

# configured NAME: what CMake's cache has for it.
configured() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }

driver=$(configured TARNIK_DRIVER)
sparkle=$(configured TARNIK_SPARKLE)
crypto=$(configured OPENSSL_CRYPTO_LIBRARY)
oldest=$(configured TARNIK_OLDEST_MACOS)
[[ -f $build/app/tarnik ]] || fail "$build has no program; build it first"
[[ $(configured TARNIK_DEV_BUILD) == OFF ]] || fail "$build is a development build, which would never move into place"
[[ -n $driver ]] || fail "there is no desktop driver: configure with -DTARNIK_DRIVER=<its executable>"
[[ -f $driver ]] || fail "the desktop driver $driver isn't there"
[[ -z $sparkle || -d $sparkle ]] || fail "Sparkle's framework $sparkle isn't there"
[[ -f $crypto ]] || fail "OpenSSL's library '$crypto' isn't there"
need macdeployqt "Qt (brew install qt)"
for tool in otool install_name_tool plutil ditto; do need "$tool" "macOS and Xcode's command line tools"; done

mkdir -p "$contents/MacOS" "$contents/Resources" "$contents/Frameworks"
install -m 755 "$build/app/tarnik" "$contents/MacOS/tarnik"
install -m 644 "$build/macos/Info.plist" "$contents/Info.plist"
plutil -lint -s "$contents/Info.plist"
"$here/icons.sh" "$contents/Resources"
install -m 755 "$driver" "$contents/Resources/cua-driver"

# Loaded by name when it is first needed, so that nobody but us knows of it.
install -m 755 "$crypto" "$contents/Frameworks/libcrypto.3.dylib"
install_name_tool -id @rpath/libcrypto.3.dylib "$contents/Frameworks/libcrypto.3.dylib"
if [[ -n $sparkle ]]; then ditto "$sparkle" "$contents/Frameworks/Sparkle.framework"; fi
macdeployqt "$app" -verbose=1

# Where the build machine has its libraries is nobody else's business.
otool -l "$contents/MacOS/tarnik" | sed -n 's/^ *path \(.*\) (offset [0-9]*)$/\1/p' | while read -r folder; do
    if [[ $folder == /* ]]; then install_name_tool -delete_rpath "$folder" "$contents/MacOS/tarnik"; fi
done

# The bundle stands alone, and starts on the oldest system that it says it does.
faults=0
while IFS= read -r -d '' file; do
    load=$(otool -l "$file" 2>/dev/null || true)
    # What isn't code of the system's kind has no load commands.
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
echo "$app is put together; next: $here/sign.sh $app IDENTITY"
