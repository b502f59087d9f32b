#!/usr/bin/env bash
# The package can be made, lintian finds no errors in it, it installs and leaves nothing behind, and the program in
# it knows its version and its bundle. What dpkg changes here is a folder: the machine's own packages stay as they are.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
# Nobody should take this package for one that can be given away.
trap 'rm -rf "$work" build/package' EXIT
system=$work/system
mkdir -p "$system" "$work"/admin/{info,updates,triggers} "$work/home"
touch "$work"/admin/{status,available}

fail() {
    echo "$*" >&2
    exit 1
}

# Nothing is known to be installed there, the package has no scripts, and every user may try it.
manage() {
    dpkg --instdir="$system" --admindir="$work/admin" --log="$work/log" --force-not-root --force-depends \
        --force-bad-path "$@" >"$work/said" 2>&1 || fail "dpkg $1 failed: $(<"$work/said")"
}

# A release that can't be had: nobody listens there. The key is 32 bytes of nothing.
nowhere=127.0.0.1:9
tools/package.sh "-DTARNIK_NODE_RELEASE_BASE=https://$nowhere" \
    "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=$(printf 'A%.0s' {1..43})"
manage --install build/package/tarnik_*.deb
program=$system/usr/bin/tarnik

wanted="tarnik $(dpkg-parsechangelog -l packaging/linux/debian/changelog -S Version)"
said=$("$program" --version)
[[ $said == "$wanted" ]] || fail "the package of $wanted says it is $said"
said=$(env -i HOME="$work/home" timeout 60 "$program" --console </dev/null || true)
grep -qF "${nowhere%:*}" <<<"$said" || fail "the program did not read its settings in the package, but said: $said"

manage --purge tarnik
left=$(find "$system" -mindepth 1)
[[ -z $left ]] || fail "once removed, the package leaves behind: $left"
