#!/usr/bin/env bash
# package.sh [-DNAME=VALUE...]: builds the Debian packages of the release build in build/package/: tarnik-console, which
# needs no display, and tarnik, which adds the window.
#
# -D passes the settings of cmake/BundleSettings.cmake and cmake/RuntimePins.cmake; those of an earlier run are removed. The
# same commit, settings and installed packages give the same packages, byte for byte (tools/check-reproducible.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
umask 022

# Each package and its component of cmake/Install.cmake.
packages=(tarnik:window tarnik-console:console)
iconSizes=(16 24 32 48 64 128 256)
root=$PWD
out=$root/build/package
work=$out/work  # has the layout that Debian's tools expect
folder=usr/lib/tarnik/Contents/MacOS
changelog=$root/packaging/linux/debian/changelog
version=$(dpkg-parsechangelog -l "$changelog" -S Version)

[[ $(uname) == Linux ]] || {
    echo "package.sh: the package can only be built on Debian" >&2
    exit 1
}
# Files in the package have the time of the commit, or the time of the release if no repository exists.
: "${SOURCE_DATE_EPOCH:=$(git log -1 --format=%ct 2>/dev/null || dpkg-parsechangelog -l "$changelog" -S Timestamp)}"
export SOURCE_DATE_EPOCH

cmake --preset release -U 'TARNIK_NODE_*' -U TARNIK_WEB_ORIGIN -U TARNIK_DEFAULT_WEB_ORIGIN \
    -U 'TARNIK_POLICY_*' -U TARNIK_DRIVER "$@" >/dev/null
tools/build.sh release tarnik

rm -rf "$out"
mkdir -p "$work/debian"
cp packaging/linux/debian/{control,changelog} "$work/debian/"

# stage PACKAGE COMPONENT: puts the files of the package into its folder.
stage() {
    local staging=$work/debian/$1 documents=$work/debian/$1/usr/share/doc/$1
    mkdir -p "$staging/DEBIAN"
    DESTDIR=$staging cmake --install build/release --prefix /usr --component "$2" >/dev/null
    install -D -m 644 packaging/linux/debian/copyright "$documents/copyright"
    install -D -m 644 "$changelog" "$documents/changelog"
    gzip -9n "$documents/changelog"
}
install -D -m 644 packaging/linux/debian/tarnik.lintian-overrides "$work/debian/tarnik/usr/share/lintian/overrides/tarnik"
for package in "${packages[@]}"; do stage "${package%:*}" "${package#*:}"; done
gzip -9n "$work/debian/tarnik-console/usr/share/man/man1/tarnik.1"

icons=$work/debian/tarnik/usr/share/icons/hicolor
for size in "${iconSizes[@]}"; do
    mkdir -p "$icons/${size}x$size/apps"
    rsvg-convert --width "$size" --height "$size" "$icons/scalable/apps/com.tarnik.node.svg" \
        --output "$icons/${size}x$size/apps/com.tarnik.node.png"
done

# make PACKAGE: builds the package of the staged files.
make() {
    local package=$1 staging=debian/$1 program programs=("debian/$1/$folder"/*) name linked=()
    for program in "${programs[@]}"; do
        objcopy --only-keep-debug "$program" "$out/${program##*/}.debug"
        strip --strip-unneeded --remove-section=.comment --remove-section=.note "$program"
        linked+=("$program" "$out/${program##*/}.debug")
    done
    "$root/tools/spdx.sh" "$package" "$version" "${linked[@]}" >"$staging/usr/share/doc/$package/$package.spdx"
    # The control file lists the libraries that the programs load at run time.
    dpkg-shlibdeps -T"debian/$package.substvars" "${programs[@]}"
    rm -f debian/files
    dpkg-gencontrol -p"$package" -P"$staging" -T"debian/$package.substvars"
    (cd "$staging" && find usr -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum >DEBIAN/md5sums)
    name=$(cut -d' ' -f1 debian/files)
    find "$staging" -exec touch --no-dereference --date "@$SOURCE_DATE_EPOCH" {} +
    dpkg-deb --root-owner-group --build "$staging" "$out/$name" >/dev/null
    (cd "$out" && lintian --allow-root --fail-on error --tag-display-limit 0 "$name")
    echo "build/package/$name: $(stat -c %s "$out/$name") bytes; its debug symbols are beside it"
}
# warnOfSettings: names the settings without which the packaged program can't install a helper.
warnOfSettings() {
    local pair
    for pair in TKNodeReleaseBase:TARNIK_NODE_RELEASE_BASE TKNodeReleasePublicKey:TARNIK_NODE_RELEASE_PUBLIC_KEY \
        TKNodeRuntimeFile:TARNIK_NODE_RUNTIMES; do
        grep -qF "<key>${pair%:*}</key>" "debian/tarnik-console/usr/lib/tarnik/Contents/Info.plist" ||
            echo "The packaged program can't install a helper, because ${pair#*:} has no value for this machine."
    done
}
cd "$work"
for package in "${packages[@]}"; do make "${package%:*}"; done
warnOfSettings
rm -rf "$work"
