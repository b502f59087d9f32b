#!/usr/bin/env bash
# The package can be made, lintian finds no errors in it, and the program in it knows its version and its bundle.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
# Nobody should take this package for one that can be given away.
trap 'rm -rf "$work" build/package' EXIT

# A release that can't be had: nobody listens there. The key is 32 bytes of nothing.
nowhere=127.0.0.1:9
tools/package.sh "-DTARNIK_NODE_RELEASE_BASE=https://$nowhere" \
    "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=$(printf 'A%.0s' {1..43})"
dpkg-deb --extract build/package/tarnik_*.deb "$work/system"
program=$work/system/usr/bin/tarnik

wanted="tarnik $(dpkg-parsechangelog -l packaging/linux/debian/changelog -S Version)"
said=$("$program" --version)
[[ $said == "$wanted" ]] || {
    echo "the package of $wanted says it is $said" >&2
    exit 1
}
mkdir "$work/home"
said=$(env -i HOME="$work/home" timeout 60 "$program" --console </dev/null || true)
grep -qF "${nowhere%:*}" <<<"$said" || {
    echo "the program did not read its settings in the package, but said: $said" >&2
    exit 1
}
