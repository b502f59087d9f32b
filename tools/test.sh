#!/usr/bin/env bash
# test.sh PRESET [--repeat N] [NAME]: builds the preset and runs its tests, or the tests whose name matches NAME. With
# --repeat, runs each test N times or until the test fails.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
options=()
if [[ ${1-} == --repeat ]]; then
    options+=(--repeat "until-fail:$2")
    shift 2
fi
if [[ -n ${1-} ]]; then options+=(--tests-regex "$1"); fi
targets=()
# The fuzz targets need only the program's libraries.
if [[ $preset == fuzz ]]; then targets=(tarnik_fuzz); fi

tools/build.sh "$preset" ${targets[@]+"${targets[@]}"}
built=$SECONDS
status=0
ctest --preset "$preset" --parallel "$(getconf _NPROCESSORS_ONLN)" --no-tests=error ${options[@]+"${options[@]}"} || status=$?
echo "$preset: built in $built s, tested in $((SECONDS - built)) s"
exit "$status"
