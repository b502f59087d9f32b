#!/usr/bin/env bash
# package.sh [-DNAME=VALUE...]: builds the Debian package of the release build in build/package/.
#
# -D passes the settings of cmake/BundleSettings.cmake; those of an earlier run are removed. The same commit, settings,
# machine and folder give the same package, byte for byte.
set -euo pipefail
cd "$(dirname "$0")/.."
umask 022

package=tarnik
iconSizes=(16 24 32 48 64 128 256)
out=$PWD/build/package
work=$out/work  # has the layout that Debian's tools expect
staging=$work/debian/$package
changelog=packaging/linux/debian/changelog

[[ $(uname) == Linux ]] || {
    echo "package.sh: the package can only be built on Debian" >&2
    exit 1
}
# Files in the package have the time of the commit, or of the release if there is no repository.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || dpkg-parsechangelog -l "$changelog" -S Timestamp)
export SOURCE_DATE_EPOCH

cmake --preset release -U 'TARNIK_NODE_*' -U TARNIK_WEB_ORIGIN -U TARNIK_DEFAULT_WEB_ORIGIN -U TARNIK_DRIVER "$@" >/dev/null
tools/build.sh release "$package"

rm -rf "$out"
mkdir -p "$staging/DEBIAN"
cp packaging/linux/debian/{control,changelog} "$work/debian/"
DESTDIR=$staging cmake --install build/release --prefix /usr >/dev/null

icons=$staging/usr/share/icons/hicolor
for size in "${iconSizes[@]}"; do
    mkdir -p "$icons/${size}x$size/apps"
    rsvg-convert --width "$size" --height "$size" "$icons/scalable/apps/com.tarnik.node.svg" \
        --output "$icons/${size}x$size/apps/com.tarnik.node.png"
done
documents=$staging/usr/share/doc/$package
install -D -m 644 packaging/linux/debian/copyright "$documents/copyright"
install -D -m 644 "$changelog" "$documents/changelog"
gzip -9n "$documents/changelog" "$staging/usr/share/man/man1/$package.1"

cd "$work"
programs=(debian/"$package/usr/lib/$package/Contents/MacOS/$package"{,-console,-window})
for program in "${programs[@]}"; do
    objcopy --only-keep-debug "$program" "$out/${program##*/}.debug"
    strip --strip-unneeded --remove-section=.comment --remove-section=.note "$program"
done

# The control file lists the libraries that the programs load at run time.
dpkg-shlibdeps "${programs[@]}"
dpkg-gencontrol -P"$staging"
(cd "$staging" && find usr -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum >DEBIAN/md5sums)
name=$(cut -d' ' -f1 debian/files)
find "$staging" -exec touch --no-dereference --date "@$SOURCE_DATE_EPOCH" {} +
dpkg-deb --root-owner-group --build "$staging" "$out/$name" >/dev/null
rm -rf "$work"

cd "$out"
lintian --allow-root --fail-on error --tag-display-limit 0 "$name"
echo "build/package/$name: $(stat -c %s "$name") bytes; its debug symbols are beside it"
