#!/usr/bin/env bash
# test.sh PRESET [--repeat N] [NAME]: builds what the tests need, then runs them, or those whose name matches; each N
# times in a row, if that is said, until one fails.
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
# Of the program itself, fuzzing takes only the libraries.
if [[ $preset == fuzz ]]; then targets=(tarnik_fuzz); fi

tools/build.sh "$preset" ${targets[@]+"${targets[@]}"}
built=$SECONDS
status=0
ctest --preset "$preset" --parallel "$(getconf _NPROCESSORS_ONLN)" --no-tests=error ${options[@]+"${options[@]}"} || status=$?
echo "$preset: built in $built s, tested in $((SECONDS - built)) s"
exit "$status"
