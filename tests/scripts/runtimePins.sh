#!/usr/bin/env bash
# Tests that the settings of the Linux runtimes are checked, and that the build writes the runtime of its platform.
set -euo pipefail
PATH=$PATH:/opt/homebrew/bin:/usr/local/bin
digest=$(printf 'a%.0s' {1..64})
good=linux-x64=node-v24.22.1-linux-x64.tar.gz=$digest
arm=${good//x64/arm64}
failures=0

# expect TEXT RUNTIMES [BASE]: the settings print TEXT in one line.
expect() {
    local output
    output=$(cmake "-DTARNIK_NODE_RUNTIMES=$2" "-DTARNIK_NODE_RUNTIME_BASE=${3-}" -DTARNIK_HOST_PLATFORMS=linux-arm64 \
        -P cmake/RuntimePins.cmake 2>&1 | tr -s ' \n' ' ') || true
    grep -qF -- "$1" <<<"$output" || {
        echo "$2 ${3-}: didn't print '$1' but: $output"
        failures=$((failures + 1))
    }
}

expect "<string>node-v24.22.1-linux-arm64.tar.gz</string>" "$good,$arm"
expect "/dist/v24.22.1/</string>" "$arm"
expect "<string>http://127.0.0.1/a&amp;b/</string>" "${arm//24.22.1/20.1.1}" "http://127.0.0.1/a&b/"
expect "set TARNIK_NODE_RUNTIME_BASE" "${arm//24.22.1/20.1.1}"
expect "64 lower-case hexadecimal digits" "${good%a}A"
expect "two runtimes for linux-x64" "$good,$good"
expect "can't set the runtime of darwin-x64" "${good//linux-x64/darwin-x64}"
expect "an archive such as" "linux-x64=../node-v24.22.1-linux-x64.tar.gz=$digest"
expect "PLATFORM=ARCHIVE=SHA256" "linux-x64=$digest"
expect "ends in a slash" "$good" "https://example.org"
expect "without TARNIK_NODE_RUNTIMES" "" "https://example.org/"
exit $((failures > 0))
