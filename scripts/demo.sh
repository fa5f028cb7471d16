#!/usr/bin/env bash
# Builds the library and runs the demo on its built-in example, then the
# molcryst command on a real structure kept with the examples.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DMOLCRYST_BUILD_TESTS=OFF >/dev/null
cmake --build build/release --target molcryst_demo molcryst_cli
./build/release/examples/molcryst_demo
echo
echo "== molcryst report examples/cif/cod-2224635-melaminium-phosphate-hydrate.cif"
./build/release/apps/molcryst/molcryst report examples/cif/cod-2224635-melaminium-phosphate-hydrate.cif
