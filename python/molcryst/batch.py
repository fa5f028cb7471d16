"""Batch runs of molcryst over a Dask distributed cluster.

    python3 -m molcryst.batch --scheduler tcp://host:8786 DIR_OR_LIST -o OUT.jsonl

does what ``molcryst batch DIR_OR_LIST -o OUT.jsonl`` does on one machine -
the same files, the same lines, the same resumption - with the per-file work
spread over the cluster's workers. Every worker must be able to import
molcryst and to read the files under the paths given here (a shared file
system); the output is written here, by this process alone, one line at a
time as results come in.
"""

import argparse
import json
import sys
import time

import molcryst

# Tasks submitted ahead of the results, per worker thread: enough to keep the
# cluster busy without holding a whole collection's futures at once.
_AHEAD_PER_THREAD = 4


def report_lines(paths):
    """The batch lines of some files, [(line, failed), ...]; what each task runs.
    A task takes a few files at once, so that the scheduler's cost per task
    (milliseconds) is shared by several reports of about as much each."""
    return [molcryst.report_line(path) for path in paths]


def _progress_line(done, total, seconds):
    width = 30
    filled = width * done // total if total else width
    text = "[%s%s]  %d/%d" % ("#" * filled, "." * (width - filled), done, total)
    if done and seconds > 0:
        rate = done / seconds
        left = int(-(-(total - done) // rate)) if rate else 0
        clock = "%d:%02d:%02d" % (left // 3600, left // 60 % 60, left % 60) if left >= 3600 else \
            "%d:%02d" % (left // 60, left % 60)
        return text + "  %.1f files/s  %s left" % (rate, clock)
    return text + "  - files/s  -:-- left"


class _Progress:
    """The progress line on a terminal, redrawn at most ten times a second."""

    def __init__(self, total, stream):
        self.total = total
        self.stream = stream
        self.shown = stream.isatty()
        self.start = time.monotonic()
        self.last = 0.0

    def update(self, done, force=False):
        now = time.monotonic()
        if not self.shown or (not force and now - self.last < 0.1):
            return
        self.last = now
        self.stream.write("\r\033[K" + _progress_line(done, self.total, now - self.start))
        self.stream.flush()

    def clear(self):
        if self.shown:
            self.stream.write("\r\033[K")
            self.stream.flush()

    def finish(self, done):
        if self.shown:
            self.update(done, force=True)
            self.stream.write("\n")
            self.stream.flush()


def run(client, folder_or_list, output, chunk=8, out=sys.stdout, err=sys.stderr):
    """Reports every file of `folder_or_list` not yet in `output` on the
    cluster of `client`, `chunk` files a task, appending one line per file
    as each task ends; returns the exit code
    of ``molcryst batch``: 0, or 1 when a file failed or the output could
    not be written."""
    from distributed import as_completed

    start = time.monotonic()
    try:
        files = molcryst.batch_input(folder_or_list)
        batch_output = molcryst.BatchOutput(output)
    except molcryst.Error as e:
        print(e, file=err)
        return 1
    todo = [f for f in files if not batch_output.is_done(f)]
    skipped = len(files) - len(todo)
    reported = failed = 0
    status = 0
    progress = _Progress(len(todo), err)
    if todo:
        threads = max(1, sum(client.nthreads().values()))
        ahead = threads * _AHEAD_PER_THREAD
        pending = {}
        waiting = as_completed()
        next_file = 0

        def submit():
            nonlocal next_file
            while next_file < len(todo) and len(pending) < ahead:
                paths = todo[next_file:next_file + chunk]
                next_file += len(paths)
                future = client.submit(report_lines, paths, pure=False)
                pending[future] = paths
                waiting.add(future)

        submit()
        progress.update(0, force=True)
        try:
            for future in waiting:
                paths = pending.pop(future)
                try:
                    results = future.result()
                except Exception as e:  # a worker that died on the task, or the cluster's fault
                    results = [(json.dumps({"error": "%s: the report stopped: %s" % (path, e), "file": path},
                                           separators=(",", ":")), True) for path in paths]
                for line, file_failed in results:
                    batch_output.append(line)
                    if file_failed:
                        failed += 1
                        progress.clear()
                        print(json.loads(line)["error"], file=err)
                    else:
                        reported += 1
                progress.update(reported + failed)
                submit()
            progress.finish(reported + failed)
        except molcryst.Error as e:
            # The output cannot take more: what is written stands, and a later run takes up the rest.
            progress.clear()
            print(e, file=err)
            status = 1
            for future in pending:
                future.cancel()
    if failed:
        status = 1
    seconds = time.monotonic() - start
    rate = (reported + failed) / seconds if seconds > 0 else 0.0
    print("%d files: %d reported, %d failed, %d skipped (already in %s), in %.1f s (%.1f files/s)"
          % (len(files), reported, failed, skipped, output, seconds, rate), file=out)
    return status


def main(argv=None):
    parser = argparse.ArgumentParser(
        prog="python3 -m molcryst.batch",
        description="Report every CIF of a folder tree or a list, one JSON line each, on a Dask cluster.")
    parser.add_argument("input", help="a folder (its CIF files and those below), or a file listing files")
    parser.add_argument("-o", "--output", required=True, help="the output (JSON lines); files in it are skipped")
    parser.add_argument("--scheduler", required=True, help="the Dask scheduler's address, tcp://host:8786")
    parser.add_argument("--chunk", type=int, default=8, help="files a task reports (default 8)")
    parser.add_argument("--timeout", type=float, default=30.0,
                        help="seconds to wait for the scheduler to answer (default 30)")
    args = parser.parse_args(argv)
    if args.chunk < 1:
        parser.error("--chunk: a task takes at least one file")

    from distributed import Client

    try:
        client = Client(args.scheduler, timeout=args.timeout)
    except (OSError, TimeoutError) as e:
        print("%s: cannot reach the scheduler: %s" % (args.scheduler, e), file=sys.stderr)
        return 1
    with client:
        return run(client, args.input, args.output, chunk=args.chunk)


if __name__ == "__main__":
    sys.exit(main())
