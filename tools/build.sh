#!/usr/bin/env bash
# build.sh PRESET [TARGET...]: configures the preset if necessary, and builds.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift

ninjaFile=build/$preset/build.ninja
if [[ ! -e $ninjaFile || CMakePresets.json -nt $ninjaFile ]]; then
    cmake --preset "$preset"
fi
targets=()
if (($# > 0)); then targets=(--target "$@"); fi
cmake --build --preset "$preset" --parallel "$(getconf _NPROCESSORS_ONLN)" ${targets[@]+"${targets[@]}"}
