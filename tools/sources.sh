#!/usr/bin/env bash
# The C++ files of the tree, one a line: those that git tracks, and new ones that it doesn't ignore.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' | while read -r file; do
    if [[ -e $file ]]; then echo "$file"; fi
done
