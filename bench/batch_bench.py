"""Batch runs and the Python module against the command.

    bash scripts/python.sh bench/batch_bench.py [--sizes 500,1000,2000]

Makes collections of the 25 structures of tests/io/cif repeated (symbolic
links in a temporary folder), runs `molcryst batch` on each with 1 and 2
worker processes, and `python3 -m molcryst.batch` on a Dask LocalCluster of
2 worker processes, and prints files per second; then the cost of one report
through Python (`molcryst.report`, the dictionary; `molcryst.report_line`,
the JSON text alone) against running the command once per file.
"""

import argparse
import glob
import os
import pathlib
import subprocess
import sys
import tempfile
import time

import molcryst

ROOT = pathlib.Path(__file__).resolve().parents[1]
COMMAND = os.environ.get("MOLCRYST_COMMAND", str(ROOT / "build/python/apps/molcryst/molcryst"))
FILES = sorted(glob.glob(str(ROOT / "tests/io/cif/*.cif")))


def collection(folder, size):
    folder.mkdir()
    for i in range(size):
        os.symlink(FILES[i % len(FILES)], folder / ("s%05d.cif" % i))


def batch_seconds(folder, jobs, output):
    if output.exists():
        output.unlink()
    start = time.perf_counter()
    subprocess.run([COMMAND, "batch", str(folder), "-o", str(output), "--jobs", str(jobs)],
                   check=True, stdout=subprocess.DEVNULL)
    return time.perf_counter() - start


def per_file(call, rounds):
    start = time.perf_counter()
    for _ in range(rounds):
        for path in FILES:
            call(path)
    return (time.perf_counter() - start) / (rounds * len(FILES))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sizes", default="500,1000,2000")
    parser.add_argument("--rounds", type=int, default=8)
    args = parser.parse_args()
    sizes = [int(s) for s in args.sizes.split(",")]

    from distributed import LocalCluster

    cluster = LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None,
                           host="127.0.0.1")
    print("| files | 1 job | 2 jobs | speed-up | Dask, 2 workers |")
    print("|---:|---:|---:|---:|---:|")
    with tempfile.TemporaryDirectory() as tmp:
        for size in sizes:
            folder = pathlib.Path(tmp) / ("c%d" % size)
            collection(folder, size)
            output = pathlib.Path(tmp) / "out.jsonl"
            one = batch_seconds(folder, 1, output)
            two = batch_seconds(folder, 2, output)
            output.unlink()
            start = time.perf_counter()
            subprocess.run([sys.executable, "-m", "molcryst.batch", "--scheduler", cluster.scheduler_address,
                            str(folder), "-o", str(output)], check=True, stdout=subprocess.DEVNULL)
            dask = time.perf_counter() - start
            print("| %d | %.2f s, %.0f files/s | %.2f s, %.0f files/s | %.2f | %.2f s, %.0f files/s |"
                  % (size, one, size / one, two, size / two, one / two, dask, size / dask))
            sys.stdout.flush()

    cluster.close()

    per_command = per_file(lambda path: subprocess.run([COMMAND, "report", "--json", path], check=True,
                                                       stdout=subprocess.DEVNULL), 1)
    per_text = per_file(molcryst.report_line, args.rounds)
    per_dict = per_file(molcryst.report, args.rounds)
    print()
    print("| one report, mean over the %d structures | time |" % len(FILES))
    print("|---|---:|")
    print("| `molcryst report --json FILE`, a process per file | %.2f ms |" % (per_command * 1e3))
    print("| `molcryst.report_line(path)`: the report as JSON text | %.2f ms |" % (per_text * 1e3))
    print("| `molcryst.report(path)`: the same as a dictionary | %.2f ms |" % (per_dict * 1e3))
    print("| Python's share: dictionary over text | %.2f ms (%.0f %%) |"
          % ((per_dict - per_text) * 1e3, 100 * (per_dict - per_text) / per_text))


if __name__ == "__main__":
    main()
