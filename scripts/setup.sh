#!/usr/bin/env bash
# Installs what a fresh Debian machine lacks to build and test molcryst:
# cmake, ninja, g++, clang++ (the second compiler the tests build with, and
# the one with libFuzzer), GoogleTest and Google Benchmark, and for the file
# readers and the command gemmi (CIF), CLI11 (arguments) and nlohmann/json;
# for pictures CoordGen (flat layouts) and expat (the tests parse the SVG);
# for the Python module Python's headers, pybind11 and NumPy, and for its
# tests and batch runs on clusters pytest, Dask and Dask distributed.
# Does nothing when all of them are present.
set -euo pipefail

missing=()
command -v cmake >/dev/null 2>&1 || missing+=(cmake)
command -v ninja >/dev/null 2>&1 || missing+=(ninja-build)
command -v g++ >/dev/null 2>&1 || missing+=(g++)
command -v clang++ >/dev/null 2>&1 || missing+=(clang)
dpkg -s libgtest-dev >/dev/null 2>&1 || missing+=(libgtest-dev)
dpkg -s libbenchmark-dev >/dev/null 2>&1 || missing+=(libbenchmark-dev)
for package in libclang-rt-14-dev gemmi-dev tao-pegtl-dev libstb-dev libcli11-dev nlohmann-json3-dev libcoordgen-dev libexpat1-dev \
  python3-dev pybind11-dev python3-pybind11 python3-numpy python3-pytest python3-dask python3-distributed; do
  dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}"
