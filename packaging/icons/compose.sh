#!/usr/bin/env bash
# compose.sh TEMPLATE: prints the template with @MARK@ replaced by the path of mark.svg.
#
# The path is drawn in a square of 18 by 18. The template sets its colour.
set -euo pipefail
folder=$(dirname "$0")

mark=$(tr '\n' ' ' <"$folder/mark.svg" | grep -o '<path[^>]*/>' |
    sed -E 's/[[:space:]]+/ /g; s/ (fill|id|class|style)="[^"]*"//g' || true)
if [[ -z $mark || $mark == *$'\n'* ]]; then
    echo "compose.sh: mark.svg must have one path" >&2
    exit 1
fi
template=$(<"$1")
printf '%s\n' "${template//@MARK@/$mark}"
