# Sourced by the scripts beside it.
# shellcheck shell=bash

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# need TOOL WHERE: the tool is there, or it is said where it comes from.
need() {
    command -v "$1" >/dev/null || fail "$1 isn't here; it comes with $2"
}

# needApp FOLDER: it is an application of ours.
needApp() {
    [[ $1 == *.app && -x $1/Contents/MacOS/tarnik ]] || fail "$1 is no tarnik.app; bundle.sh makes one"
}

# needIdentity NAME: the keychain has a certificate of that name, with its key.
needIdentity() {
    need security "macOS"
    local known
    known=$(security find-identity -v -p codesigning)
    [[ $known == *"\"$1\""* || $known == *" $1 "* ]] ||
        fail "the keychain has no signing identity '$1'; it has:"$'\n'"$known"
}
