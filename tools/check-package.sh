#!/usr/bin/env bash
# Checks that the packages can be built, that lintian finds no errors, that they install and are removed completely, that
# tarnik-console alone works without Qt, and that the installed programs are hardened, are in the list of what is linked,
# and find their version, bundle and siblings. dpkg works on a private folder, not on the packages of the machine.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
# Removes the packages too, which have test settings and must not be distributed.
trap 'rm -rf "$work" build/package' EXIT
system=$work/system
mkdir -p "$system" "$work"/admin/{info,updates,triggers} "$work/home"
touch "$work"/admin/{status,available}

fail() {
    echo "$*" >&2
    exit 1
}

# --force-depends: the private folder has no other packages. --force-not-root: the packages have no scripts.
manage() {
    dpkg --instdir="$system" --admindir="$work/admin" --log="$work/log" --force-not-root --force-depends \
        --force-bad-path "$@" >"$work/output" 2>&1 || fail "dpkg $1 failed: $(<"$work/output")"
}

# An address where no server listens, and a key of 32 zero bytes.
nowhere=127.0.0.1:9
tools/package.sh "-DTARNIK_NODE_RELEASE_BASE=https://$nowhere" \
    "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=$(printf 'A%.0s' {1..43})"
manage --install build/package/tarnik-console_*.deb
program=$system/usr/bin/tarnik
version=$(dpkg-parsechangelog -l packaging/linux/debian/changelog -S Version)

# Runs the installed program with an empty home.
run() { env -i HOME="$work/home" timeout 60 "$program" "$@" 2>&1 </dev/null || true; }

output=$(run --version)
[[ $output == "tarnik $version" ]] || fail "the package of $version has a program that prints $output"
for face in --console serve; do
    output=$(run "$face")
    grep -qF "${nowhere%:*}" <<<"$output" || fail "tarnik $face did not read its settings in the package: $output"
done
output=$(run)
[[ $output == *"package tarnik"* ]] || fail "without the window, tarnik prints: $output"
for executable in "$system"/usr/lib/tarnik/Contents/MacOS/*; do
    if readelf -d "$executable" | grep -E 'NEEDED.*(Qt|curl|ssl|crypto)'; then fail "$executable loads a large library"; fi
done
# checkLinks PACKAGE: the SPDX list must name the installed programs by their digests, and each library package on which
# the package depends. dpkg-shlibdeps finds these independently.
checkLinks() {
    local list=$system/usr/share/doc/$1/$1.spdx listed file name
    while read -r name; do
        file=$system/${name#./}
        grep -A 3 -xF "FileName: $name" "$list" | grep -qF "SHA256: $(sha256sum "$file" | cut -d' ' -f1)" ||
            fail "$1.spdx doesn't have the digest of $file"
    done < <(dpkg-deb --contents build/package/"$1"_*.deb | grep -oE '\./usr/lib/tarnik/Contents/MacOS/[a-z-]+$')
    listed=$(sed -n 's/^Relationship: .* DYNAMIC_LINK SPDXRef-//p' "$list" | sort -u)
    for name in $(dependencies "$1"); do
        grep -qxF "$name" <<<"$listed" || fail "$1.spdx lacks $name, on which the package depends"
    done
    # The libraries that tarnik-window loads at first use are dependencies of tarnik-console.
    for name in $listed; do
        grep -qxF "$name" <<<"$(dependencies "$1" tarnik-console)" || fail "$1 doesn't depend on $name, which it loads"
    done
}
# dependencies PACKAGE...: prints the libraries on which the packages depend, as names of an SPDX list.
dependencies() {
    local package
    for package in "$@"; do dpkg-deb --field build/package/"$package"_*.deb Depends; done | tr ',' '\n' |
        sed -nE 's/^ *(lib[^ ]+).*/\1/p' | tr -c 'a-z0-9.\n-' '-' | sort -u
}
checkLinks tarnik-console
for linked in libboost1.81-dev libstdc++-12-dev; do
    grep -qxF "PackageName: $linked" "$system/usr/share/doc/tarnik-console/tarnik-console.spdx" ||
        fail "tarnik-console.spdx lacks $linked, whose code the programs contain"
done

# Each command has its section in the man page, and the completions know it.
for command in $(run help | sed -n '/^Commands/,/^$/s/^  \([a-z]*\) .*/\1/p'); do
    zgrep -q "^\.It Cm $command" "$system/usr/share/man/man1/tarnik.1.gz" || fail "the man page lacks $command"
    for file in bash-completion/completions/tarnik zsh/vendor-completions/_tarnik \
        fish/vendor_completions.d/tarnik.fish; do
        grep -qw "$command" "$system/usr/share/$file" || fail "$file lacks $command"
    done
done
[[ -f $system/usr/lib/systemd/user/tarnik.service ]] || fail "the unit is missing"

manage --install build/package/tarnik_*.deb
dpkg-deb --field build/package/tarnik_*.deb Depends | grep -qF "tarnik-console (= $version)" ||
    fail "tarnik doesn't depend on its tarnik-console"
checkLinks tarnik
tools/check-hardening.sh "$system"/usr/lib/tarnik/Contents/MacOS/*
[[ $(run --list-screens) == *connected* ]] || fail "tarnik doesn't find tarnik-window"

# Status 77 means that this user can't create another root.
tried=0
tools/try-package.sh build/package || tried=$?
((tried == 0 || tried == 77)) || fail "the package can't be used"

manage --purge tarnik tarnik-console
left=$(find "$system" -mindepth 1)
[[ -z $left ]] || fail "the removed packages left: $left"
((tried == 0)) || echo "skipped: the package was not tried whole; all other checks of it passed"
exit "$tried"
