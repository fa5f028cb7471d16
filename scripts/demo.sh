#!/usr/bin/env bash
# Builds the library and runs the demo on its built-in example.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DMOLCRYST_BUILD_TESTS=OFF >/dev/null
cmake --build build/release --target molcryst_demo
./build/release/examples/molcryst_demo
