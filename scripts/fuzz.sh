#!/usr/bin/env bash
# Fuzzes a reader with libFuzzer under AddressSanitizer and
# UndefinedBehaviorSanitizer: bash scripts/fuzz.sh [SECONDS] [TARGET]
# (default 60 seconds, cif_reader_fuzz; the others are criterion_archiver_fuzz,
# new_crystal_memento_fuzz, connectivity_archive_fuzz and formula_fuzz). The
# corpus starts from the real structures of the tests, the archives in
# tests/fuzz/archives, or the formula texts in tests/fuzz/formulae, and grows in
# build/fuzz/corpus (build/fuzz/corpus-TARGET); a crash leaves its input in build/fuzz/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
bash scripts/setup.sh
cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_FLAGS="-O1 -g -fsanitize=fuzzer-no-link" -DMOLCRYST_SANITIZE=ON -DMOLCRYST_BUILD_FUZZERS=ON \
  -DMOLCRYST_BUILD_TESTS=OFF -DMOLCRYST_BUILD_EXAMPLES=OFF >/dev/null
target=${2:-cif_reader_fuzz}
cmake --build build/fuzz --target "$target"
if [ "$target" = cif_reader_fuzz ]; then
  mkdir -p build/fuzz/corpus
  cp -n tests/io/cif/*.cif build/fuzz/corpus/ 2>/dev/null || true
  cd build/fuzz
  ./tests/fuzz/cif_reader_fuzz -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 -timeout=10 \
    -dict=../../tests/fuzz/cif.dict corpus
else
  mkdir -p "build/fuzz/corpus-$target"
  if [ "$target" = formula_fuzz ]; then seeds=tests/fuzz/formulae; else seeds=tests/fuzz/archives; fi
  cp -n "$seeds"/* "build/fuzz/corpus-$target/" 2>/dev/null || true
  cd build/fuzz
  "./tests/fuzz/$target" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 -timeout=10 "corpus-$target"
fi
