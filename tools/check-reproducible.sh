#!/usr/bin/env bash
# Checks that a build of the same sources in another folder gives the same packages, byte for byte. The other build starts
# from an empty folder without a compiler cache, and has another time zone, language and home.
#
# If the compiler cache is shared between folders (CCACHE_NOHASHDIR), objects in build/release may name the folder of
# another build. The check then fails until build/release is removed.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work" build/package' EXIT
unset CCACHE_BASEDIR CCACHE_NOHASHDIR
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
# The settings of tools/check-package.sh, so that its build is used again.
settings=("-DTARNIK_NODE_RELEASE_BASE=https://127.0.0.1:9" "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=$(printf 'A%.0s' {1..43})")
tools/package.sh "${settings[@]}"

other=$work/another/folder
mkdir -p "$other" "$work/home"
git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
    if [[ -e $file ]]; then printf '%s\0' "$file"; fi
done | tar --create --null --files-from=- | tar --extract --directory "$other"
(cd "$other" && env CCACHE_DISABLE=1 TZ=Pacific/Kiritimati LC_ALL=C.UTF-8 HOME="$work/home" tools/package.sh "${settings[@]}" \
    >"$work/output" 2>&1) || {
    tail -n 20 "$work/output" >&2
    exit 1
}
failed=0
for file in build/package/*; do
    cmp "$file" "$other/$file" || failed=1
done
((failed)) || echo "two builds in two folders gave the same $(find build/package -type f | wc -l) files"
exit "$failed"
