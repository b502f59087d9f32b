#!/usr/bin/env bash
# check-mac-conditions.sh [PRESET]: builds the preset and runs its unit tests on Linux under conditions of macOS:
# - TMPDIR is long, and is reached through a symbolic link;
# - /bin has only the programs that macOS has there, so /bin/true and /bin/false don't exist, and /bin/sh is bash;
# - tar is bsdtar, and no locale is set;
# - `sed -i` takes the next argument for a suffix.
# The tests run in a mount namespace with its own root folder, so they can't see the programs that are replaced.
set -euo pipefail
cd "$(dirname "$0")/.."

programs=(bash cat chmod cp csh dash date dd df echo ed expr hostname kill ksh link ln ls mkdir mv pax ps pwd rm rmdir
    sleep stty sync tcsh test unlink zsh '[')
# The real path has the 56 bytes of macOS's, and 4 bytes more, because a socket's address is 4 bytes longer on Linux.
temporary=/folders/zz/zyxvpxvq6csfxvn_n000000000000000000000/T
target=/private$temporary

# Also in a hosted CI, because the CI decides what it allows and not the change under test.
skip() {
    echo "skipped: $*"
    exit 77
}

# makeRoot ROOT: fills the folder ROOT with the folders of this system, but for the differences above.
makeRoot() {
    local root=$1 entry name
    mount -t tmpfs tmpfs "$root"
    for entry in /*; do
        name=${entry#/}
        if [[ $name == bin ]]; then
            continue
        elif [[ -L $entry ]]; then
            cp -P "$entry" "$root/$name"
        elif [[ -d $entry ]]; then
            mkdir "$root/$name"
            mount --rbind "$entry" "$root/$name"
        fi
    done

    mkdir "$root/bin" "$root/gnu"
    for name in "${programs[@]}"; do
        if [[ -e /usr/bin/$name ]]; then ln -s "/usr/bin/$name" "$root/bin/$name"; fi
    done
    ln -s /usr/bin/bash "$root/bin/sh"
    mount --bind /usr/bin/bsdtar "$root/usr/bin/tar"

    cp /usr/bin/sed "$root/gnu/sed"
    cat >"$root/gnu/bsd-sed" <<'SED'
#!/bin/bash
arguments=()
while (($# > 0)); do
    if [[ $1 == -i ]]; then
        arguments+=("-i${2-}")
        shift
    else
        arguments+=("$1")
    fi
    shift
done
exec /gnu/sed ${arguments[@]+"${arguments[@]}"}
SED
    chmod +x "$root/gnu/bsd-sed"
    mount --bind "$root/gnu/bsd-sed" "$root/usr/bin/sed"

    mkdir -p "$root$target"
    chmod 1777 "$root$target"
    ln -s private/folders "$root/folders"
}

# runInside ROOT PRESET UID GID: makes ROOT the root folder and runs the tests as the user.
runInside() {
    local root=$1 preset=$2 user=$3 group=$4 project=$PWD variable asUser=()
    makeRoot "$root"
    mkdir "$root/old"
    cd "$root"
    pivot_root . old
    umount -l old
    cd "$project"

    for variable in LANG LANGUAGE $(compgen -v LC_ || true); do unset "$variable"; done
    export TMPDIR=$temporary
    if [[ -e /bin/true || $(tar --version) != bsdtar* || ! $TMPDIR -ef $target ]]; then
        echo "the conditions of macOS could not be made" >&2
        return 1
    fi
    if ((user != 0)); then asUser=(unshare --user --map-user="$user" --map-group="$group" --); fi
    ${asUser[@]+"${asUser[@]}"} ctest --preset "$preset" --parallel "$(getconf _NPROCESSORS_ONLN)" --no-tests=error \
        --tests-regex '\.' --exclude-regex '^script\.'
}

if [[ ${1-} == --inside ]]; then
    shift
    runInside "$@"
    exit
fi

preset=${1-development}
[[ -L /bin ]] || skip "/bin and /usr/bin are not one folder"
[[ -x /usr/bin/bsdtar ]] || skip "bsdtar is missing"
# The superuser needs no user namespace, and would lose the right to change owners in it.
namespaces=(--mount)
if (($(id -u) != 0)); then namespaces+=(--user --map-root-user); fi
unshare "${namespaces[@]}" mount -t tmpfs tmpfs /mnt 2>/dev/null || skip "this system doesn't allow mount namespaces"
tools/build.sh "$preset"
root=$(mktemp -d)
trap 'rmdir "$root"' EXIT
unshare "${namespaces[@]}" "$0" --inside "$root" "$preset" "$(id -u)" "$(id -g)"
