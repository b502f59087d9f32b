#!/usr/bin/env bash
# Every shell script is free of what shellcheck finds.
set -euo pipefail
cd "$(dirname "$0")/.."
shopt -s nullglob
shellcheck --external-sources dev .ci/run tools/*.sh tests/scripts/*.sh packaging/*/*.sh
