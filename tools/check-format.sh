#!/usr/bin/env bash
# Checks that every C++ file is formatted as .clang-format defines.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/sources.sh | xargs clang-format-19 --dry-run --Werror
