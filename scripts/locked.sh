#!/usr/bin/env bash
# Runs a command while holding the project's build lock, so that two builds
# never run at once on a shared machine: scripts/locked.sh cmake --build build/test
exec flock /tmp/molcryst-build.lock "$@"
