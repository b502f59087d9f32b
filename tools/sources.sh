#!/usr/bin/env bash
# Prints the C++ files of the tree, one per line: tracked files, and new files that git doesn't ignore.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' | while read -r file; do
    if [[ -e $file ]]; then echo "$file"; fi
done
