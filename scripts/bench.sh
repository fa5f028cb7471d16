#!/usr/bin/env bash
# Builds the benchmarks in Release (-O2) and runs them; extra arguments go to
# every benchmark program (for example --benchmark_filter=Graph).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" \
  -DMOLCRYST_BUILD_TESTS=OFF -DMOLCRYST_BUILD_EXAMPLES=OFF -DMOLCRYST_BUILD_BENCHMARKS=ON >/dev/null
cmake --build build/bench
for program in build/bench/bench/*_bench; do
  echo "== ${program##*/}"
  "$program" "$@"
done
