#!/usr/bin/env bash
# Tests what packaging/macos/libraries.sh refuses. A dry run prints the steps, and checks the archives that exist.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# says TEXT: a dry run must print TEXT.
says() {
    local output
    output=$(packaging/macos/libraries.sh --dry-run "$work/prefix" "$work/qt" 2>&1) || true
    [[ $output == *"$1"* ]] || {
        echo "didn't print '$1' but: $output"
        failures=1
    }
}
mkdir -p "$work/qt/lib/cmake/Qt6" "$work/prefix/sources"
version=$work/qt/lib/cmake/Qt6/Qt6ConfigVersionImpl.cmake
echo 'set(PACKAGE_VERSION "6.8.2")' >"$version"
says "has Qt 6.8.2 instead of"
echo 'set(PACKAGE_VERSION "6.8.3")' >"$version"
for processor in arm64 x86_64; do says "libboost_url.a -verify_arch $processor"; done
says "stops here once $work/prefix/sources/boost_1_81_0.tar.gz is downloaded"
echo damaged >"$work/prefix/sources/boost_1_81_0.tar.gz"
says "the digest of boost isn't recorded"
echo damaged >"$work/prefix/sources/openssl-3.5.7.tar.gz"
says "openssl-3.5.7.tar.gz has the digest $(shasum -a 256 "$work/prefix/sources/openssl-3.5.7.tar.gz" | cut -d' ' -f1)"

exit "$failures"
