#!/usr/bin/env bash
# spdx.sh PACKAGE VERSION PROGRAM DEBUG [PROGRAM DEBUG]...: prints the SPDX list (version 2.3) of the Debian packages whose
# code is linked into the programs. SOURCE_DATE_EPOCH is its date.
#
# The list comes from the files: the libraries that a program loads (NEEDED), the libraries that it names and loads at
# first use, and the headers and static libraries whose code it contains. DEBUG has the debug symbols of PROGRAM, which
# name the folder of each header.
set -euo pipefail
package=$1
version=$2
shift 2
architecture=$(dpkg --print-architecture)

# owners FILE...: prints the packages of the files and folders. A folder of several packages is left out.
owners() {
    { dpkg-query --search "$@" "${@#/usr}" 2>/dev/null || true; } | sed -nE 's/^([^,:]+)(:[a-z0-9]+)?: .*/\1/p' | sort -u
}

# library SONAME: prints the package of the shared library.
library() {
    local file name
    file=$(cc -print-file-name="$1")
    name=$(owners "$file" "$(realpath "$file")")
    [[ -n $name ]] || {
        echo "spdx.sh: no package has $1" >&2
        return 1
    }
    echo "$name"
}

identifier() { echo "SPDXRef-$1" | tr -c 'A-Za-z0-9.\n-' '-'; }

# links PROGRAM DEBUG: prints the relationship and the package of everything that is linked into the program.
links() {
    local needed name folders
    needed=$(readelf --dynamic --wide "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
    for name in $needed; do echo "DYNAMIC_LINK $(library "$name")"; done
    # core/foundation/SharedLibrary_linux.cpp has these names.
    for name in $(strings -a "$1" | grep -xE 'lib(curl|crypto)\.so\.[0-9]+'); do
        echo "DYNAMIC_LINK $(library "$name")"
    done
    readelf --debug-dump=rawline "$2" 2>/dev/null | grep -oE '/usr/[^ ]+' | sort -u >"$work/folders"
    mapfile -t folders <"$work/folders"
    owners "${folders[@]}" | sed 's/^/STATIC_LINK /'
    echo "STATIC_LINK $(library libgcc.a)"
    if [[ $needed != *libstdc++.so* ]]; then echo "STATIC_LINK $(library libstdc++.a)"; fi
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
while (($# > 0)); do
    name=$(identifier "File-${1##*/}")
    printf 'FileName: ./usr/lib/tarnik/Contents/MacOS/%s\nSPDXID: %s\nFileChecksum: SHA1: %s\nFileChecksum: SHA256: %s\n' \
        "${1##*/}" "$name" "$(sha1sum "$1" | cut -d' ' -f1)" "$(sha256sum "$1" | cut -d' ' -f1)" >>"$work/files"
    printf 'LicenseConcluded: NOASSERTION\nFileCopyrightText: NOASSERTION\n\n' >>"$work/files"
    links "$1" "$2" >"$work/links"
    sort -u "$work/links" | while read -r kind linked; do
        echo "$linked" >>"$work/linked"
        echo "Relationship: $name $kind $(identifier "$linked")" >>"$work/relationships"
    done
    shift 2
done

# describe NAME VERSION [REFERENCE]
describe() {
    printf 'PackageName: %s\nSPDXID: %s\nPackageVersion: %s\nPackageDownloadLocation: NOASSERTION\n' \
        "$1" "$(identifier "$1")" "$2"
    printf 'FilesAnalyzed: false\nPackageLicenseConcluded: NOASSERTION\nPackageLicenseDeclared: NOASSERTION\n'
    printf 'PackageCopyrightText: NOASSERTION\n%s\n' "${3-}"
}

cat <<END
SPDXVersion: SPDX-2.3
DataLicense: CC0-1.0
SPDXID: SPDXRef-DOCUMENT
DocumentName: $package-$version-$architecture
DocumentNamespace: https://tarnik.invalid/spdx/$package-$version-$architecture-$(sha256sum "$work/files" | cut -c1-32)
Creator: Organization: tarnik maintainers
Creator: Tool: tools/spdx.sh
Created: $(date --utc --date "@$SOURCE_DATE_EPOCH" +%Y-%m-%dT%H:%M:%SZ)
Relationship: SPDXRef-DOCUMENT DESCRIBES $(identifier "$package")

END
cat "$work/files"
describe "$package" "$version"
sort -u "$work/linked" | while read -r linked; do
    of=$(dpkg-query --show --showformat '${Version}\n' "$linked" | head -n 1)
    describe "$linked" "$of" "ExternalRef: PACKAGE-MANAGER purl pkg:deb/debian/${linked//+/%2B}@${of//+/%2B}?arch=$architecture
"
done
sed -n 's/^SPDXID: \(.*\)/Relationship: SPDXRef-DOCUMENT DESCRIBES \1/p' "$work/files"
cat "$work/relationships"
