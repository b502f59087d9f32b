#!/usr/bin/env bash
# libraries.sh [--dry-run] PREFIX QT: makes the libraries of a bundle that runs on other Macs: for both processors and the
# oldest supported macOS. PREFIX gets OpenSSL, utf8proc and Boost, and QT is the folder of a Qt from its vendor's
# installer, such as ~/Qt/6.8.3/macos, which is only checked.
#
# Homebrew's libraries have one processor and need the macOS of the machine that built them, so they are for development
# only. libcurl isn't made: the program loads that of macOS, which gets security updates from Apple and trusts the
# certificates in the keychain. Property lists are read by our own code.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
if [[ ${1-} == --dry-run ]]; then
    dryRun=yes
    shift
fi
(($# == 2)) || fail "usage: libraries.sh [--dry-run] PREFIX QT"
[[ $1 == /* ]] || fail "PREFIX must be an absolute path"
prefix=$1
qt=$2
sources=$prefix/sources
oldest=13.0
processors=(arm64 x86_64)
qtVersion=6.8.3  # 6.8.0 to 6.8.2 lose links that other programs open

# Each line has a name, the address of the publisher's archive, and its SHA-256. Each digest was computed from the file:
# - openssl: the file has the publisher's signature, BA5473A2B0587B07FB27CF2D216094DFD0CB81EF.
# - utf8proc: the file in Debian's source package is the publisher's archive of the commit
#   1cb28a66ca79a0845e99433fd1056257456cef8b. It has no signature.
# - boost: Debian packs the files anew, so nobody has computed this digest yet.
archives="openssl https://github.com/openssl/openssl/releases/download/openssl-3.5.7/openssl-3.5.7.tar.gz \
a8c0d28a529ca480f9f36cf5792e2cd21984552a3c8e4aa11a24aa31aeac98e8
utf8proc https://github.com/JuliaStrings/utf8proc/archive/refs/tags/v2.8.0.tar.gz \
a0a60a79fe6f6d54e7d411facbfcc867a6e198608f2cd992490e46f04b1bcecc
boost https://archives.boost.io/release/1.81.0/source/boost_1_81_0.tar.gz unrecorded"

for tool in curl tar perl shasum; do need "$tool" "macOS"; done
for tool in make clang lipo; do need "$tool" "Xcode's command line tools (xcode-select --install)"; done
need cmake "CMake (brew install cmake)"

# checkQt: fails if the folder has another Qt, or one that doesn't run on other Macs.
checkQt() {
    local file=$qt/lib/cmake/Qt6/Qt6ConfigVersionImpl.cmake version processor
    [[ -f $file ]] || fail "$qt has no Qt; install Qt $qtVersion for macOS with its vendor's installer"
    version=$(sed -n 's/^set(PACKAGE_VERSION "\(.*\)")$/\1/p' "$file")
    [[ $version == "$qtVersion" ]] || fail "$qt has Qt $version instead of $qtVersion"
    for processor in "${processors[@]}"; do
        run lipo "$qt/lib/QtCore.framework/Versions/A/QtCore" -verify_arch "$processor" ||
            fail "$qt has no code for $processor, so it isn't from the vendor's installer"
    done
}

# obtain NAME: downloads the archive unless it is there, checks its digest, and unpacks it to $work/NAME.
obtain() {
    local name=$1 address wanted archive digest
    read -r address wanted < <(sed -n "s/^$name //p" <<<"$archives")
    archive=$sources/${address##*/}
    if [[ ! -f $archive ]]; then
        run mkdir -p "$sources"
        run curl --fail --location --proto '=https' --output "$archive.part" "$address"
        run mv "$archive.part" "$archive"
    fi
    if [[ -f $archive ]]; then
        digest=$(shasum -a 256 "$archive" | cut -d' ' -f1)
        [[ $wanted != unrecorded ]] || fail "the digest of $name isn't recorded. $archive has $digest: compare it with" \
            "the one that the publisher signed, and record it in this script"
        [[ $digest == "$wanted" ]] || fail "$archive has the digest $digest instead of $wanted"
    elif [[ $wanted == unrecorded ]]; then
        echo "# stops here once $archive is downloaded, because the digest of $name isn't recorded"
    fi
    run mkdir -p "$work/$name"
    run tar -xf "$archive" -C "$work/$name" --strip-components 1
}

# OpenSSL is built once for each processor. It reads no configuration file and loads no module, because the folders of
# this machine belong to somebody else on another Mac.
makeOpenssl() {
    local processor folder=$work/openssl file
    for processor in "${processors[@]}"; do
        run mkdir -p "$folder/$processor"
        run inFolder "$folder/$processor" ../Configure "darwin64-$processor" --prefix="$prefix" --libdir=lib \
            "-mmacosx-version-min=$oldest" shared no-apps no-autoload-config no-docs no-dso no-legacy no-module no-tests
        run make -C "$folder/$processor" -j "$(getconf _NPROCESSORS_ONLN)"
        run make -C "$folder/$processor" install_dev "DESTDIR=$work/$processor"
    done
    run diff -r "$work/arm64$prefix/include" "$work/x86_64$prefix/include" ||
        fail "the headers of OpenSSL differ between the processors"
    run mkdir -p "$prefix"
    run cp -R "$work/arm64$prefix/." "$prefix"
    for file in libcrypto.3.dylib libssl.3.dylib libcrypto.a libssl.a; do
        run lipo -create "$work/arm64$prefix/lib/$file" "$work/x86_64$prefix/lib/$file" -output "$prefix/lib/$file"
    done
}
inFolder() (cd "$1" && shift && "$@")

makeUtf8proc() {
    # CMake 4 rejects the old minimum version of this project.
    run cmake -S "$work/utf8proc" -B "$work/utf8proc/build" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_POLICY_VERSION_MINIMUM=3.5 "-DCMAKE_INSTALL_PREFIX=$prefix" -DCMAKE_INSTALL_LIBDIR=lib \
        "-DCMAKE_OSX_DEPLOYMENT_TARGET=$oldest" "-DCMAKE_OSX_ARCHITECTURES=arm64;x86_64"
    run cmake --build "$work/utf8proc/build"
    run cmake --install "$work/utf8proc/build"
}

# The program compiles the sources of Boost.JSON and Boost.URL itself (core/foundation/BoostSources.cpp), but CMake looks
# for the libraries.
makeBoost() {
    local flags="-arch arm64 -arch x86_64 -mmacosx-version-min=$oldest"
    run inFolder "$work/boost" ./bootstrap.sh --with-libraries=json,url "--prefix=$prefix"
    run inFolder "$work/boost" ./b2 install "--prefix=$prefix" variant=release link=static threading=multi \
        "cflags=$flags" "cxxflags=$flags -std=c++20" "linkflags=$flags"
}

checkQt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export MACOSX_DEPLOYMENT_TARGET=$oldest
for name in openssl utf8proc boost; do obtain "$name"; done
makeOpenssl
makeUtf8proc
makeBoost
for file in libcrypto.3.dylib libutf8proc.a libboost_json.a libboost_url.a; do
    for processor in "${processors[@]}"; do
        run lipo "$prefix/lib/$file" -verify_arch "$processor" || fail "$file has no code for $processor"
    done
done
echo "next: cmake --preset release '-DCMAKE_OSX_ARCHITECTURES=arm64;x86_64' -DCMAKE_OSX_DEPLOYMENT_TARGET=$oldest" \
    "'-DCMAKE_PREFIX_PATH=$prefix;$qt' -DOPENSSL_ROOT_DIR=$prefix -DTARNIK_DRIVER=… -DTARNIK_SPARKLE=…"
