# Functions of the scripts in this folder, which source it.
# shellcheck shell=bash

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# need TOOL ORIGIN: fails if the tool is missing, and prints what provides it.
need() {
    command -v "$1" >/dev/null || fail "$1 is missing; it is part of $2"
}

# needApp FOLDER: fails if the folder is not tarnik.app.
needApp() {
    [[ $1 == *.app && -x $1/Contents/MacOS/tarnik ]] || fail "$1 is not tarnik.app: run bundle.sh"
}

# needIdentity NAME: fails if the keychain has no certificate of that name with its key.
needIdentity() {
    need security "macOS"
    local known
    known=$(security find-identity -v -p codesigning)
    [[ $known == *"\"$1\""* || $known == *" $1 "* ]] ||
        fail "the keychain has no signing identity '$1'; it has:"$'\n'"$known"
}
