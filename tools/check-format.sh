#!/usr/bin/env bash
# Every C++ file is laid out as .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/sources.sh | xargs clang-format-19 --dry-run --Werror
