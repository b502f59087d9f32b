# Functions of the scripts in this folder, which source it.
# shellcheck shell=bash

# With --dry-run as first argument, a script prints its steps in order and changes nothing. A missing tool is then
# reported, and the script continues.
dryRun=no

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# need TOOL ORIGIN: fails if the tool is missing, and prints what provides it.
need() {
    command -v "$1" >/dev/null && return
    [[ $dryRun == yes ]] || fail "$1 is missing; it is part of $2"
    echo "# $1 is missing here; it is part of $2"
}

# run COMMAND...: runs the command, or prints it in a dry run.
run() {
    if [[ $dryRun == no ]]; then
        "$@"
    else
        printf ' %q' "$@" | sed 's/^ //'
        echo
    fi
}

# needApp FOLDER: fails if the folder is not tarnik.app.
needApp() {
    [[ $1 == *.app && -x $1/Contents/MacOS/tarnik ]] || fail "$1 is not tarnik.app: run bundle.sh"
}

# needIdentity NAME: fails if the keychain has no certificate of that name with its key.
needIdentity() {
    need security "macOS"
    [[ $dryRun == no ]] || return 0
    local known
    known=$(security find-identity -v -p codesigning)
    [[ $known == *"\"$1\""* || $known == *" $1 "* ]] ||
        fail "the keychain has no signing identity '$1'; it has:"$'\n'"$known"
}

# isCode FILE: succeeds if the file is a Mach-O program or library.
isCode() {
    case $(head -c 4 "$1" | od -An -tx1 | tr -d ' \n') in
        cffaedfe | cefaedfe | cafebabe | cafebabf) return 0 ;;
    esac
    return 1
}
