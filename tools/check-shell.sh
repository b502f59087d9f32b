#!/usr/bin/env bash
# Every shell script is free of what shellcheck finds, and whoever checks it out can start it.
set -euo pipefail
cd "$(dirname "$0")/.."
shopt -s nullglob
scripts=(dev .ci/run tools/*.sh tests/scripts/*.sh packaging/*/*.sh)
shellcheck --external-sources "${scripts[@]}"
for script in "${scripts[@]}"; do
    if [[ $(head -c 2 "$script") == '#!' && ! -x $script ]]; then
        echo "$script can't be executed"
        exit 1
    fi
done
