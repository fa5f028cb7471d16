#!/usr/bin/env bash
# Builds the Python module molcryst and the molcryst command in build/python
# (Release, -O2, no sanitizers), for Debian's python3, which sees the NumPy,
# pytest and Dask that scripts/setup.sh installs. With arguments, then runs
# that interpreter with them, the module on its path:
#   bash scripts/python.sh -c "import molcryst"
#   bash scripts/python.sh -m pytest -q tests/python
# PYTHON=/path/to/python3 picks another interpreter.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
python="${PYTHON:-/usr/bin/python3}"
[ -x "$python" ] || python="$(command -v python3)"
cmake -S . -B build/python -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" \
  -DMOLCRYST_BUILD_TESTS=OFF -DMOLCRYST_BUILD_EXAMPLES=OFF -DMOLCRYST_WERROR=ON \
  -DMOLCRYST_BUILD_PYTHON=ON -DPython_EXECUTABLE="$python" >/dev/null
cmake --build build/python --target molcryst_python molcryst_cli
if [ $# -gt 0 ]; then
  export PYTHONPATH="$PWD/build/python/python${PYTHONPATH:+:$PYTHONPATH}"
  export MOLCRYST_COMMAND="$PWD/build/python/apps/molcryst/molcryst"
  exec "$python" "$@"
fi
