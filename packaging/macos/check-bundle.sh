#!/usr/bin/env bash
# check-bundle.sh APP [OLDEST [PROCESSORS]]: checks that all code in tarnik.app runs on other Macs.
#
# Each executable and library must have code for PROCESSORS ("arm64 x86_64") that runs on macOS OLDEST (13.0), and must
# load only files of the bundle and of macOS. The load commands are resolved as dyld resolves them: each executable is
# followed with the run paths of all files on the way. Code that no executable loads by a load command, such as a plugin,
# is followed from the executable of its bundle. Needs otool and lipo, of Xcode or of LLVM.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/macos/tools.sh
source "$here/tools.sh"
(($# >= 1 && $# <= 3)) || fail "usage: check-bundle.sh APP [OLDEST [PROCESSORS]]"
needApp "$1"
app=$(realpath "$1")
oldest=${2-13.0}
processors=${3-arm64 x86_64}
for tool in otool lipo; do need "$tool" "Xcode's command line tools (xcode-select --install)"; done

faults=0
report() {
    echo "${file#"$app/Contents/"} ($processor) $*" >&2
    faults=$((faults + 1))
}

# commands FILE: prints the load commands that matter, one per line: `program`, `minos VERSION`, `path RUNPATH` or
# `load LIBRARY`. A weak library counts as well, because the bundle is meant to be complete.
commands() {
    { otool -arch "$processor" -l "$1" 2>/dev/null || true; } | awk '
        $1 == "cmd" { command = $2; if (command == "LC_MAIN" || command == "LC_UNIXTHREAD") print "program" }
        { value = $0; sub(/^ *[a-z]+ /, "", value); sub(/ \(offset [0-9]+\)$/, "", value) }
        $1 == "minos" && command == "LC_BUILD_VERSION" { print "minos " value }
        $1 == "version" && command == "LC_VERSION_MIN_MACOSX" { print "minos " value }
        $1 == "path" && command == "LC_RPATH" { print "path " value }
        $1 == "name" && command ~ /^LC_(LOAD|LOAD_WEAK|REEXPORT|LAZY_LOAD|LOAD_UPWARD)_DYLIB$/ { print "load " value }'
}

# isNewer A B: succeeds if version A is later than version B.
isNewer() {
    local a b i
    IFS=. read -r -a a <<<"$1"
    IFS=. read -r -a b <<<"$2"
    for i in 0 1 2; do
        if ((${a[i]:-0} != ${b[i]:-0})); then return $((${a[i]:-0} < ${b[i]:-0})); fi
    done
    return 1
}

# expand PATH FILE: sets `expanded` to the path without @executable_path and @loader_path.
expand() {
    case $1 in
        @executable_path*) expanded=$programFolder${1#@executable_path} ;;
        @loader_path*) expanded=${2%/*}${1#@loader_path} ;;
        *) expanded=$1 ;;
    esac
}

# resolve LIBRARY FILE RUNPATHS: sets `found` to the file in the bundle, or to an empty text for a library of macOS. Fails
# if it is neither. The libraries of macOS aren't files, so their names can't be verified.
resolve() {
    local folder candidates=''
    found=
    case $1 in
        /*/../*) return 1 ;;
        /usr/lib/* | /System/*) return ;;
        @rpath/*)
            while IFS= read -r folder; do
                if [[ $folder == /usr/lib/swift && $1 == @rpath/libswift* ]]; then return; fi
                candidates+=$folder/${1#@rpath/}$'\n'
            done <<<"$3"
            ;;
        *)
            expand "$1" "$2"
            candidates=$expanded$'\n'
            ;;
    esac
    while IFS= read -r folder; do
        if [[ $folder == /* && -f $folder ]]; then
            found=$(realpath "$folder")
            if [[ $found == "$app"/* ]]; then return; fi
        fi
    done <<<"$candidates"
    return 1
}

# follow FILE RUNPATHS: checks what FILE loads, and follows it. `followed` has the files of this walk.
follow() {
    local file=$1 paths=$2 facts kind value
    case $followed in *"|$file|"*) return ;; esac
    followed+="$file|"
    facts=$(commands "$file")
    [[ -n $facts ]] || report "is loaded, but has no code for this processor"
    while read -r kind value; do
        [[ $kind == path ]] || continue
        expand "$value" "$file"
        case $value in
            @* | /usr/lib/* | /System/*) ;;
            *) report "searches the folder $value of the build machine" ;;
        esac
        paths+=$'\n'$expanded
    done <<<"$facts"
    while read -r kind value; do
        [[ $kind == load ]] || continue
        if ! resolve "$value" "$file" "$paths"; then
            report "needs $value, which is neither in the bundle nor part of macOS"
        elif [[ -n $found ]]; then
            follow "$found" "$paths"
        fi
    done <<<"$facts"
}

# checkFile FILE: checks the processor and the oldest macOS of FILE, and adds it to `programs` or to `others`.
checkFile() {
    local file=$1 facts least
    if [[ " $(lipo -archs "$file") " != *" $processor "* ]]; then
        report "has no code for this processor"
        return
    fi
    facts=$(commands "$file")
    least=$(sed -n 's/^minos //p' <<<"$facts")
    if [[ -z $least ]]; then
        report "doesn't name its oldest macOS"
    elif isNewer "$least" "$oldest"; then
        report "needs macOS $least, but the bundle is for macOS $oldest"
    fi
    if [[ $'\n'$facts$'\n' == *$'\nprogram\n'* ]]; then programs+=("$file"); else others+=("$file"); fi
}

code=()
while IFS= read -r -d '' file; do
    if isCode "$file"; then code+=("$file"); fi
done < <(find "$app/Contents" -type f -print0)
((${#code[@]} > 0)) || fail "$app has no code"

for processor in $processors; do
    programs=()
    others=()
    for file in "${code[@]}"; do checkFile "$file"; done
    reached='|'
    for program in ${programs[@]+"${programs[@]}"}; do
        programFolder=${program%/*} followed='|'
        follow "$program" ''
        reached+=${followed#|}
    done
    for other in ${others[@]+"${others[@]}"}; do
        case $reached in *"|$other|"*) continue ;; esac
        bundle=${other%/Contents/*}
        program=$bundle/Contents/MacOS/$(basename "$bundle" | sed 's/\.[a-z]*$//')
        programFolder=${program%/*} followed='|' paths=
        if [[ -f $program ]]; then
            while read -r path; do
                expand "$path" "$program"
                paths+=$'\n'$expanded
            done < <(commands "$program" | sed -n 's/^path //p')
        fi
        follow "$other" "$paths"
    done
done
((faults == 0)) || fail "$faults faults in $app"
echo "$app: ${#code[@]} files with code, each for $processors and macOS $oldest"
