#!/usr/bin/env bash
# Builds the library, its tests and the demo with AddressSanitizer,
# UndefinedBehaviorSanitizer and LeakSanitizer and warnings as errors, then
# runs every test, the demo included. A second build tree then compiles the
# whole project (library, tests, benchmarks, demo) with clang++ and warnings as
# errors, so that code only one compiler accepts fails here. Last, the Python
# module is built in a tree of its own without sanitizers (an instrumented
# extension cannot be loaded into a plain interpreter) and its tests run.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/test -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="-O1 -g" \
  -DMOLCRYST_SANITIZE=ON -DMOLCRYST_WERROR=ON -DMOLCRYST_BUILD_TESTS=ON -DMOLCRYST_BUILD_EXAMPLES=ON \
  -DMOLCRYST_BUILD_PYTHON=OFF
cmake --build build/test
ctest --test-dir build/test --output-on-failure -j 2

cmake -S . -B build/clang -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="-O0" \
  -DMOLCRYST_WERROR=ON -DMOLCRYST_BUILD_TESTS=ON -DMOLCRYST_BUILD_EXAMPLES=ON -DMOLCRYST_BUILD_BENCHMARKS=ON \
  -DPython_EXECUTABLE="${PYTHON:-/usr/bin/python3}"
cmake --build build/clang

bash scripts/python.sh -m pytest -q tests/python
