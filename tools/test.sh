#!/usr/bin/env bash
# test.sh PRESET [NAME]: builds everything, then runs the tests, or those whose name matches.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
only=()
if [[ -n ${2-} ]]; then only=(--tests-regex "$2"); fi

tools/build.sh "$preset"
ctest --preset "$preset" --parallel "$(getconf _NPROCESSORS_ONLN)" --no-tests=error ${only[@]+"${only[@]}"}
