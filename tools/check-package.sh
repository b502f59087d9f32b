#!/usr/bin/env bash
# Checks that the package can be built, that lintian finds no errors, that it installs and is removed completely, and that
# the installed program finds its version and its bundle. dpkg works on a private folder, not on the machine's packages.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
# Removes the package too, which has test settings and must not be distributed.
trap 'rm -rf "$work" build/package' EXIT
system=$work/system
mkdir -p "$system" "$work"/admin/{info,updates,triggers} "$work/home"
touch "$work"/admin/{status,available}

fail() {
    echo "$*" >&2
    exit 1
}

# --force-depends: the private folder has no other packages. --force-not-root: the package has no scripts.
manage() {
    dpkg --instdir="$system" --admindir="$work/admin" --log="$work/log" --force-not-root --force-depends \
        --force-bad-path "$@" >"$work/output" 2>&1 || fail "dpkg $1 failed: $(<"$work/output")"
}

# An address where no server listens, and a key of 32 zero bytes.
nowhere=127.0.0.1:9
tools/package.sh "-DTARNIK_NODE_RELEASE_BASE=https://$nowhere" \
    "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=$(printf 'A%.0s' {1..43})"
manage --install build/package/tarnik_*.deb
program=$system/usr/bin/tarnik

wanted="tarnik $(dpkg-parsechangelog -l packaging/linux/debian/changelog -S Version)"
output=$("$program" --version)
[[ $output == "$wanted" ]] || fail "the package of $wanted has a program that prints $output"
output=$(env -i HOME="$work/home" timeout 60 "$program" --console </dev/null || true)
grep -qF "${nowhere%:*}" <<<"$output" || fail "the program did not read its settings in the package, but printed: $output"

manage --purge tarnik
left=$(find "$system" -mindepth 1)
[[ -z $left ]] || fail "the removed package left: $left"
