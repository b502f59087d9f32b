#!/usr/bin/env bash
# try-package.sh PACKAGES: tries the console package in the folder PACKAGES whole. In a root of its own, apt installs it, the
# program installs a helper from a release on loopback and is paired, the package is upgraded under the running program,
# and both are removed without a trace.
#
# The root is this machine's, with a layer above it that keeps all changes; it is removed at the end. The package gets the
# settings of the release without a new build. Exits with status 77 if this user can't create such a root.
set -euo pipefail
cd "$(dirname "$0")/.."
packages=${1?the folder of the packages is missing}
if [[ ${2-} != inside ]]; then
    unshare --mount bash -c 'mount -t tmpfs tmpfs /mnt && mkdir /mnt/{upper,work,root} &&
        mount -t overlay -o lowerdir=/,upperdir=/mnt/upper,workdir=/mnt/work overlay /mnt/root' 2>/dev/null || {
        echo "skipped: this user or system can't create another root"
        exit 77
    }
    # All processes of the namespace end with its first one.
    exec unshare --mount --pid --fork --kill-child "$0" "$packages" inside
fi
umask 022
work=$(mktemp -d)
root=$work/root
user=(env -i HOME=/home/try LANG=C.UTF-8 setpriv --reuid 54321 --regid 54321 --clear-groups)
started=$SECONDS
trap 'umount --lazy "$work"; rmdir "$work"' EXIT
mount -t tmpfs tmpfs "$work"
mkdir -p "$work"/{changes,overlay,root,site,archives}

fail() {
    echo "$*" >&2
    for log in "$work"/{serve,apt}.log "$root/home/try/log"; do [[ ! -e $log ]] || tail -n 20 "$log" >&2; done
    exit 1
}
step() { echo "$((SECONDS - started)) s: $*"; }
inside() { chroot "$root" "$@"; }
tarnik() { inside "${user[@]}" timeout 60 /usr/bin/tarnik "$@"; }
apt() { inside env DEBIAN_FRONTEND=noninteractive apt-get --yes --quiet=2 "$@" >"$work/apt.log" 2>&1 || fail "apt $1 failed"; }

# waitFor TEXT COMMAND...: waits up to 60 s until the output of the command has the text.
waitFor() {
    local text=$1 output
    shift
    for _ in {1..120}; do
        output=$("$@" 2>&1) || true
        [[ $output != *"$text"* ]] || return 0
        sleep 0.5
    done
    fail "$* doesn't print '$text' but: $output"
}

# 0 means connected.
state() {
    local code=0
    tarnik status >/dev/null 2>&1 || code=$?
    echo "status $code"
}

# A release, signed with a new key, on a free port of loopback.
tools/build.sh release tarnik_release_check >/dev/null
export TARNIK_RELEASE_CHECK=$PWD/build/release/tools/release/tarnik_release_check
node tools/release/main.mjs keygen "$work/key" >/dev/null
node tools/release/main.mjs sample "$work/archives" >/dev/null
node tools/release/main.mjs make --folder "$work/site" --version 2026.1.1 --key "$work/key/release-key.pem" \
    "$work"/archives/tarnik-node-*.tar.gz
cp "$work"/archives/node-*.tar.gz "$work/site"
node tools/release/main.mjs serve "$work/site" >"$work/serve.log" &
waitFor "http://" cat "$work/serve.log"
origin=$(sed -n 's/.* at \(http:[^ ]*\) .*/\1/p' "$work/serve.log")
link=$(sed -n 's/^A pairing link: //p' "$work/serve.log")

# The settings, as the build writes them.
cmake --preset release -U 'TARNIK_NODE_*' "-DTARNIK_WEB_ORIGIN=$origin" "-DTARNIK_NODE_RELEASE_BASE=$origin" \
    "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=$(<"$work/key/release-key.pub")" "$(<"$work/archives/runtime.setting")" \
    "-DTARNIK_NODE_RUNTIME_BASE=$origin/" >/dev/null
step "released at $origin"

mount -t overlay overlay -o "lowerdir=/,upperdir=$work/changes,workdir=$work/overlay" "$root"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mkdir -p "$root/home/try" "$root/srv/try"
rm -f "$root/var/lib/man-db/auto-update"  # the index of all man pages takes half a minute
chown 54321:54321 "$root/home/try"

# pack VERSION: packs the program again, with the settings of this release.
version=$(dpkg-deb --field "$packages"/tarnik-console_*.deb Version)
dpkg-deb --raw-extract "$packages"/tarnik-console_*.deb "$work/package"
cp build/release/install/Info.plist "$work/package/usr/lib/tarnik/Contents/Info.plist"
pack() {
    sed -i "s/^Version: .*/Version: $1/" "$work/package/DEBIAN/control"
    (cd "$work/package" && find usr -type f -print0 | xargs -0 md5sum >DEBIAN/md5sums)
    dpkg-deb --root-owner-group -Znone --build "$work/package" "$root/srv/try/tarnik-console_$1.deb" >/dev/null
}
pack "$version"
pack "$version+1"

apt install "/srv/try/tarnik-console_$version.deb"
step "installed by apt"
inside "${user[@]}" /usr/bin/tarnik serve --connected-after 2 >"$root/home/try/log" 2>&1 &
waitFor "helper 2026.1.1 is as it was installed" tarnik verify
step "the helper is installed"
tarnik connect --yes "$link" >/dev/null || fail "the computer isn't connected"
waitFor "status 0" state
step "connected"

pid() { tarnik status --json | grep -o '"pid":[0-9]*'; }
helper=$(pid)
cp "$root/home/try/.tarnik/node/provenance.json" "$work"
apt install "/srv/try/tarnik-console_$version+1.deb"
[[ $(inside dpkg-query --show tarnik-console) == *"$version+1" ]] || fail "the package wasn't upgraded"
[[ $(pid) == "$helper" ]] ||
    fail "the upgrade disturbed the running helper"
tarnik quit --wait >/dev/null || fail "the old program can't be ended by the new one"
inside "${user[@]}" /usr/bin/tarnik serve >"$root/home/try/log" 2>&1 &
waitFor "status 0" state
cmp "$work/provenance.json" "$root/home/try/.tarnik/node/provenance.json" || fail "the helper was installed again"
step "upgraded, and connected again"

tarnik uninstall --yes >/dev/null || fail "tarnik can't be uninstalled"
apt purge tarnik-console
rm -rf "$root/srv/try" "$root/home/try/log"
# The package manager's own files, and those that only this script has made.
cd "$work/changes"
left=$(find . \( -type f -o -type l \) -print -o -type d ! -path . -exec test ! -d '/{}' \; -print |
    grep -vE '^\./(var/(lib/(dpkg|apt)|cache|log)/|home/try(/\.local(/(share|state))?)?$)' || true)
[[ -z $left ]] || fail "the removed package left: $left"
step "removed without a trace"
