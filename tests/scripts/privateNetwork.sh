#!/usr/bin/env bash
# Tests that devkit/privateNetwork.sh notices every attempt of a child to reach another machine, and nothing else.
set -euo pipefail
[[ $(uname) == Linux ]] || exit 77

expect() {
    local wanted=$1 status=0
    devkit/privateNetwork.sh --only bash -c "$2" 2>/dev/null || status=$?
    if [[ $status == 77 ]]; then exit 77; fi
    [[ $status == "$wanted" ]] && return
    echo "exit status $status instead of $wanted: $2" >&2
    exit 1
}

expect 0 '(: </dev/tcp/127.0.0.1/9) || (: </dev/tcp/::1/9) || getent hosts localhost >&2'
expect 3 'exit 3'
for attempt in \
    ': </dev/tcp/192.0.2.1/80' \
    ': </dev/tcp/2001:db8::1/80' \
    'echo </dev/udp/192.0.2.1/53' \
    'getent hosts example.invalid' \
    'setsid bash -c ": </dev/tcp/192.0.2.1/80"'; do
    expect 1 "($attempt) || true"
done
