"""molcryst batch: its lines, its workers, resumption after a run that was
stopped, and bad input."""

import json
import os
import pty
import shutil
import signal
import subprocess
import time

import pytest

import molcryst
from conftest import read_lines, run


@pytest.fixture
def collection(tmp_path, cif_files):
    """Eight structures in a folder tree, with a file that is no CIF beside them."""
    folder = tmp_path / "collection"
    (folder / "sub").mkdir(parents=True)
    for i, path in enumerate(cif_files[:8]):
        shutil.copy(path, folder / ("sub" if i % 2 else ".") / os.path.basename(path))
    (folder / "README.txt").write_text("not a structure\n")
    return folder


def test_lines_are_the_reports_and_jobs_do_not_change_them(command, collection, tmp_path):
    one, two = tmp_path / "one.jsonl", tmp_path / "two.jsonl"
    status, out, err = run(command, "batch", collection, "-o", one)
    assert status == 0, err
    assert out.startswith("8 files: 8 reported, 0 failed, 0 skipped")
    lines = read_lines(one)
    assert [line["file"] for line in lines] == molcryst.batch_input(str(collection))
    for line in lines:
        assert set(line) == {"file", "report"}
        assert line["report"] == molcryst.report(line["file"])
    assert run(command, "batch", collection, "-o", two, "--jobs", "2")[0] == 0
    assert read_lines(two) == lines
    # The module makes the very line the command writes.
    with open(one) as f:
        first = f.readline().rstrip("\n")
    assert molcryst.report_line(json.loads(first)["file"]) == (first, False)


def test_failed_files_get_error_lines_and_the_run_goes_on(command, cif_files, tmp_path):
    bad = tmp_path / "bad.cif"
    bad.write_text("data_x\n_cell_length_a 5\n")
    listing = tmp_path / "list.txt"
    listing.write_text("# the structures\n%s\n\n%s\n%s\n%s\n%s\n" % (
        cif_files[0], bad, tmp_path / "missing.cif", cif_files[1], cif_files[0]))
    out = tmp_path / "out.jsonl"
    status, summary, err = run(command, "batch", listing, "-o", out, "--jobs", "2")
    assert status == 1
    assert "4 files: 2 reported, 2 failed, 0 skipped" in summary
    lines = {line["file"]: line for line in read_lines(out)}
    assert sorted(lines) == sorted([cif_files[0], str(bad), str(tmp_path / "missing.cif"), cif_files[1]])
    for path in (bad, tmp_path / "missing.cif"):
        _, _, report_err = run(command, "report", path)
        assert lines[str(path)] == {"file": str(path), "error": report_err.strip()}
        assert lines[str(path)]["error"] in err


def test_a_stopped_run_is_taken_up_where_it_stopped(command, cif_files, tmp_path):
    folder = tmp_path / "many"
    folder.mkdir()
    for i in range(60):
        os.symlink(cif_files[i % len(cif_files)], folder / ("s%03d.cif" % i))
    reference = tmp_path / "reference.jsonl"
    assert run(command, "batch", folder, "-o", reference, "--jobs", "2")[0] == 0

    out = tmp_path / "out.jsonl"
    process = subprocess.Popen([command, "batch", str(folder), "-o", str(out)],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
    while not out.exists() or out.read_text().count("\n") < 5:
        assert process.poll() is None, "the run ended before it could be stopped"
        time.sleep(0.01)
    os.killpg(process.pid, signal.SIGKILL)
    process.wait()
    # As if the kill had come in the middle of a line.
    with open(out, "a") as f:
        f.write('{"file": "%s", "report": {"molcr' % (folder / "s059.cif"))
    done = out.read_text().count("\n")
    assert done < 60

    status, summary, err = run(command, "batch", folder, "-o", out, "--jobs", "2")
    assert status == 0, err
    assert "60 files: %d reported, 0 failed, %d skipped" % (60 - done, done) in summary
    assert read_lines(out) == read_lines(reference)
    status, summary, _ = run(command, "batch", folder, "-o", out)
    assert status == 0 and "60 files: 0 reported, 0 failed, 60 skipped" in summary


def test_a_file_over_its_time_is_given_up_and_its_worker_replaced(command, cif_files, tmp_path):
    # Opening a pipe that nobody writes to never returns: a file that hangs its reader.
    hanging = tmp_path / "hanging.cif"
    os.mkfifo(hanging)
    listing = tmp_path / "list.txt"
    listing.write_text("\n".join([str(hanging)] + cif_files[:3]) + "\n")
    out = tmp_path / "out.jsonl"
    status, summary, err = run(command, "batch", listing, "-o", out, "--timeout", "0.5", timeout=60)
    assert status == 1 and "4 files: 3 reported, 1 failed" in summary
    lines = {line["file"]: line for line in read_lines(out)}
    assert lines[str(hanging)]["error"] == "%s: no report after 0.5 s (stopped)" % hanging
    assert all("report" in lines[path] for path in cif_files[:3])


def test_bad_input_and_output(command, collection, cif_files, tmp_path):
    empty = tmp_path / "empty"
    empty.mkdir()
    (empty / "notes.txt").write_text("x\n")
    out = tmp_path / "out.jsonl"
    assert run(command, "batch", empty, "-o", out) == (
        1, "", "%s: no CIF files (*.cif) in this folder or below\n" % empty)
    assert run(command, "batch", tmp_path / "nowhere", "-o", out)[2] == "%s: no such file or folder\n" % (
        tmp_path / "nowhere")
    blank = tmp_path / "blank.txt"
    blank.write_text("# nothing\n\n")
    assert run(command, "batch", blank, "-o", out) == (1, "", "%s: the list names no files\n" % blank)
    status, _, err = run(command, "batch", collection, "-o", tmp_path)
    assert status == 1 and err.startswith("%s: cannot be opened for writing: " % tmp_path)
    # An output that is not a batch output is refused and left as it was.
    stranger = tmp_path / "stranger.jsonl"
    stranger.write_text('{"file": "a.cif", "report": {}}\nnot json\n')
    status, _, err = run(command, "batch", collection, "-o", stranger)
    assert (status, err) == (1, "%s:2: not a line of a batch output\n" % stranger)
    assert stranger.read_text() == '{"file": "a.cif", "report": {}}\nnot json\n'
    # A device that refuses writes: the run stops with its message and exit code 1.
    if os.path.exists("/dev/full"):
        status, _, err = run(command, "batch", collection, "-o", "/dev/full", timeout=60)
        assert status == 1 and "/dev/full: cannot be written: No space left on device" in err
    assert run(command, "batch", collection, "-o", out, "--jobs", "0")[0] == 2
    assert run(command, "batch", collection)[0] == 2


def test_progress_bar_on_a_terminal_only(command, collection, tmp_path):
    status, _, err = run(command, "batch", collection, "-o", tmp_path / "plain.jsonl")
    assert status == 0 and err == ""
    leader, follower = pty.openpty()
    process = subprocess.Popen([command, "batch", str(collection), "-o", str(tmp_path / "tty.jsonl")],
                               stdout=subprocess.DEVNULL, stderr=follower)
    os.close(follower)
    shown = b""
    while True:
        try:
            chunk = os.read(leader, 4096)
        except OSError:
            break
        if not chunk:
            break
        shown += chunk
    os.close(leader)
    assert process.wait() == 0
    bars = [bar for bar in shown.decode().replace("\033[K", "").split("\r") if bar.strip()]
    last = bars[-1]
    assert "[##############################]  8/8" in last and "files/s" in last and "0:00 left" in last
