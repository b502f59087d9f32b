#!/usr/bin/env bash
# Runs shellcheck over all shell scripts, and checks that they are executable.
set -euo pipefail
cd "$(dirname "$0")/.."
shopt -s nullglob
scripts=(dev .ci/run devkit/*.sh tools/*.sh tests/scripts/*.sh packaging/*/*.sh)
shellcheck --external-sources "${scripts[@]}"
for script in "${scripts[@]}"; do
    if [[ $(head -c 2 "$script") == '#!' && ! -x $script ]]; then
        echo "$script is not executable"
        exit 1
    fi
done
