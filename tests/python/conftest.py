"""Shared fixtures of the Python tests: the molcryst command of the same
build tree as the module, and the real structures of tests/io/cif."""

import json
import os
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
CIF_FOLDER = ROOT / "tests" / "io" / "cif"


def _command():
    path = os.environ.get("MOLCRYST_COMMAND")
    if path:
        return path
    return str(ROOT / "build" / "python" / "apps" / "molcryst" / "molcryst")


@pytest.fixture(scope="session")
def command():
    path = _command()
    if not os.access(path, os.X_OK):
        pytest.fail("no molcryst command at %s (set MOLCRYST_COMMAND)" % path)
    return path


@pytest.fixture(scope="session")
def cif_folder():
    return CIF_FOLDER


@pytest.fixture(scope="session")
def cif_files():
    return sorted(str(p) for p in CIF_FOLDER.glob("*.cif"))


def run(command, *arguments, **kwargs):
    """The command's exit code, standard output and standard error."""
    done = subprocess.run([command, *map(str, arguments)], capture_output=True, text=True, **kwargs)
    return done.returncode, done.stdout, done.stderr


def read_lines(path):
    """The parsed lines of a batch output, sorted by file."""
    with open(path) as f:
        return sorted((json.loads(line) for line in f), key=lambda line: line["file"])
