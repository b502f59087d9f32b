#!/usr/bin/env bash
# bundle.sh [--dry-run] [--this-mac] BUILD APP: makes tarnik.app from a release build and the libraries that it needs.
#
# It uses the configuration of BUILD: TARNIK_DRIVER (required), TARNIK_SPARKLE, and the settings of the Info.plist. The
# bundle must have code for both processors, so BUILD needs the libraries of libraries.sh and the Qt of its vendor. With
# --this-mac, code for this Mac is enough; Homebrew's libraries then work for a trial. The bundle isn't signed; sign.sh
# does that.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
thisMac=no
while [[ ${1-} == --* ]]; do
    case $1 in
        --dry-run) dryRun=yes ;;
        --this-mac) thisMac=yes ;;
        *) fail "unknown option $1" ;;
    esac
    shift
done
(($# == 2)) || fail "usage: bundle.sh [--dry-run] [--this-mac] BUILD APP"
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
qt=$(configured Qt6_DIR)
[[ -f $build/app/tarnik ]] || fail "$build has no program: build it first"
[[ $(configured TARNIK_DEV_BUILD) == OFF ]] || fail "$build is a development build, which would never move into place"
[[ -n $driver ]] || fail "the desktop driver is missing: configure with -DTARNIK_DRIVER=<its executable>"
[[ -f $driver ]] || fail "the desktop driver $driver doesn't exist"
[[ -z $sparkle || -d $sparkle ]] || fail "Sparkle's framework $sparkle doesn't exist"
[[ -f $crypto ]] || fail "OpenSSL's library '$crypto' doesn't exist"
# The macdeployqt of another Qt would copy the libraries of that Qt.
if [[ -x ${qt%/lib/cmake/Qt6}/bin/macdeployqt ]]; then PATH=${qt%/lib/cmake/Qt6}/bin:$PATH; fi
need macdeployqt "Qt (its vendor's installer, or brew install qt)"
for tool in otool lipo install_name_tool plutil ditto; do need "$tool" "macOS and Xcode's command line tools"; done

run mkdir -p "$contents/MacOS" "$contents/Resources" "$contents/Frameworks"
run install -m 755 "$build/app/tarnik" "$contents/MacOS/tarnik"
run install -m 644 "$build/macos/Info.plist" "$contents/Info.plist"
run plutil -lint -s "$contents/Info.plist"
run "$here/icons.sh" "$contents/Resources"
run install -m 755 "$driver" "$contents/Resources/cua-driver"

# macdeployqt doesn't find this library, because the program loads it by name at first use.
run install -m 755 "$crypto" "$contents/Frameworks/libcrypto.3.dylib"
run install_name_tool -id @rpath/libcrypto.3.dylib "$contents/Frameworks/libcrypto.3.dylib"
if [[ -n $sparkle ]]; then run ditto "$sparkle" "$contents/Frameworks/Sparkle.framework"; fi
run macdeployqt "$app" -verbose=1

# Removes the library folders of the build machine. All processors have the same folders.
{ otool -l "$build/app/tarnik" || [[ $dryRun == yes ]]; } 2>/dev/null |
    sed -n 's/^ *path \(\/.*\) (offset [0-9]*)$/\1/p' | sort -u | while read -r folder; do
    run install_name_tool -delete_rpath "$folder" "$contents/MacOS/tarnik"
done

# macdeployqt exits with status 0 if it couldn't resolve a library.
if [[ $thisMac == yes ]]; then
    run "$here/check-bundle.sh" "$app" "$(sw_vers -productVersion)" "$(uname -m)"
else
    run "$here/check-bundle.sh" "$app" "$oldest" "arm64 x86_64"
fi
if [[ $dryRun == no ]]; then echo "made $app; next: $here/sign.sh $app IDENTITY"; fi
