#!/usr/bin/env bash
# Runs COMMAND with a network of its own that has loopback and no way out. Exits with status 1 if COMMAND, or any
# process that it started, tried to reach another machine. Linux only.
#
#     devkit/privateNetwork.sh [--only] COMMAND...
#
# The kernel counts every packet and every connection for which a network namespace has no route. This includes
# questions to name servers: resolv.conf names one on another machine, and an empty /run hides the sockets of resolvers
# on this machine. The names of this machine need no question. An address beside loopback makes the network look usable.
#
# If the system doesn't allow namespaces, for example in a container without privileges, COMMAND runs in the network of
# the machine, after a message. With --only, COMMAND doesn't run then, and the exit status is 77 (skipped). This is also
# true in a hosted CI, because the CI decides that and not the change under test. If the system allows namespaces,
# every later failure is a failure.
set -euo pipefail
ownAddress=198.51.100.2  # the three addresses are reserved for documentation
nameServer=192.0.2.53

# Returns how often a packet had no route, as the kernel has counted since the namespace was created.
packetsWithoutRoute() {
    local four six
    four=$(awk '$1 == "Ip:" { if (column) print $column; for (i = 2; i <= NF; i++) if ($i == "OutNoRoutes") column = i }' \
        /proc/net/snmp)
    six=$(awk '$1 == "Ip6OutNoRoutes" { print $2 }' /proc/net/snmp6)
    echo $((four + ${six:-0}))
}

# Covers a file, which may be a link into /run, with another one.
replaceFile() {
    local cover
    cover=$(mktemp)
    echo "$2" >"$cover"
    chmod 644 "$cover"
    mkdir -p "$(dirname "$(readlink -m "$1")")"
    [[ -e $1 ]] || touch "$1"
    mount --bind "$cover" "$1"
    rm "$cover"
}

# Runs inside the namespace, as its root.
inside() {
    local user=$1 group=$2 attempts status=0
    shift 2
    ip link set lo up
    ip address add "$ownAddress/32" dev lo
    mount -t tmpfs none /run
    replaceFile /etc/resolv.conf "nameserver $nameServer"
    replaceFile /etc/hosts "127.0.0.1 localhost $(uname -n)"$'\n'"::1 localhost $(uname -n)"
    # The program behaves differently for root, so a user gets the own number back.
    local back=()
    if [[ $user != 0 ]]; then back=(unshare --user "--map-user=$user" "--map-group=$group" --); fi
    ${back[@]+"${back[@]}"} "$@" || status=$?
    attempts=$(packetsWithoutRoute)
    if ((attempts > 0)); then
        echo "privateNetwork: $attempts packets or connections had no route. To find their process, run:" >&2
        echo "    strace -f -e trace=connect,sendto,sendmsg,sendmmsg $*" >&2
        exit 1
    fi
    exit "$status"
}

if [[ ${1-} == --inside ]]; then
    shift
    inside "$@"
fi

only=no
if [[ ${1-} == --only ]]; then
    only=yes
    shift
fi
enter=(unshare --net --mount)
if [[ $(id -u) != 0 ]]; then enter+=(--map-root-user); fi
if ! command -v ip >/dev/null; then
    echo "privateNetwork: ip is missing; it is in the package iproute2" >&2
    exit 1
fi
if ! "${enter[@]}" bash -c 'ip link set lo up && mount -t tmpfs none /run' 2>/dev/null; then
    echo "privateNetwork: this system allows no namespaces, so connections to other machines go unnoticed" >&2
    if [[ $only == yes ]]; then exit 77; fi
    exec "$@"
fi
exec "${enter[@]}" -- "$0" --inside "$(id -u)" "$(id -g)" "$@"
