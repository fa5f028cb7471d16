"""python3 -m molcryst.batch on a Dask cluster of two worker processes on
this machine: the same lines as the one-process command, and the same
resumption."""

import os
import subprocess
import sys

import pytest

from conftest import read_lines, run

distributed = pytest.importorskip("distributed")


@pytest.fixture(scope="module")
def scheduler():
    cluster = distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True,
                                       dashboard_address=None, host="127.0.0.1")
    yield cluster.scheduler_address
    cluster.close()


def dask_batch(*arguments):
    done = subprocess.run([sys.executable, "-m", "molcryst.batch", *map(str, arguments)],
                          capture_output=True, text=True, timeout=300)
    return done.returncode, done.stdout, done.stderr


def test_cluster_run_equals_the_one_process_run(command, cif_folder, scheduler, tmp_path):
    reference = tmp_path / "reference.jsonl"
    assert run(command, "batch", cif_folder, "-o", reference, "--jobs", "1")[0] == 0
    out = tmp_path / "dask.jsonl"
    status, summary, err = dask_batch("--scheduler", scheduler, cif_folder, "-o", out)
    assert status == 0, err
    assert summary.startswith("25 files: 25 reported, 0 failed, 0 skipped")
    assert read_lines(out) == read_lines(reference)


def test_cluster_run_takes_up_a_stopped_run_and_tells_failures(command, cif_files, scheduler, tmp_path):
    bad = tmp_path / "bad.cif"
    bad.write_text("data_x\n")
    listing = tmp_path / "list.txt"
    listing.write_text("\n".join(cif_files[:6] + [str(bad)]) + "\n")
    reference = tmp_path / "reference.jsonl"
    assert run(command, "batch", listing, "-o", reference)[0] == 1
    with open(reference) as f:
        kept = [next(f) for _ in range(2)]
    out = tmp_path / "out.jsonl"
    out.write_text("".join(kept) + '{"file": "%s", "rep' % cif_files[5])
    status, summary, err = dask_batch("--scheduler", scheduler, "--chunk", "3", listing, "-o", out)
    assert status == 1
    assert "7 files: 4 reported, 1 failed, 2 skipped" in summary
    assert read_lines(out) == read_lines(reference)
    assert "%s: no data block with atom sites" % bad in err


def test_unreachable_scheduler_and_bad_input(cif_folder, tmp_path):
    status, _, err = dask_batch("--scheduler", "tcp://127.0.0.1:9", "--timeout", "1", cif_folder,
                                "-o", tmp_path / "out.jsonl")
    assert status == 1 and err.startswith("tcp://127.0.0.1:9: cannot reach the scheduler")
    assert dask_batch(cif_folder)[0] == 2
