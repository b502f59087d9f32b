#!/usr/bin/env bash
# Runs shellcheck over all shell scripts, and checks that they are executable. Checks the syntax of .ci/mac.yml, and that
# all its stages exist.
set -euo pipefail
cd "$(dirname "$0")/.."
shopt -s nullglob
scripts=(dev .ci/run .ci/mac devkit/*.sh tools/*.sh tests/scripts/*.sh packaging/*/*.sh)
shellcheck --external-sources "${scripts[@]}"
for script in "${scripts[@]}"; do
    if [[ $(head -c 2 "$script") == '#!' && ! -x $script ]]; then
        echo "$script is not executable"
        exit 1
    fi
done

yamllint --strict --config-data '{extends: default, rules: {line-length: {max: 120}}}' .ci/mac.yml
sed -n 's/^ *run: *//p' .ci/mac.yml | while read -r command; do
    stage=${command#.ci/mac }
    if [[ $command == "$stage" ]] || ! grep -qx "$stage() {.*" .ci/mac; then
        echo ".ci/mac.yml runs '$command', which is not a stage of .ci/mac"
        exit 1
    fi
done
