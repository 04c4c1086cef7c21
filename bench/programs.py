"""Runs the programs that measure and are measured."""

import json
import os
import re
import select
import subprocess
import sys
import tempfile
import time
from pathlib import Path


def say(text):
    print("==>", text, file=sys.stderr, flush=True)


def output_of(*command):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"{command[0]} failed with {done.returncode}")
    return done.stdout


def google_benchmark(program, repetitions, min_time):
    """Runs the rounds of all benchmarks in random order; returns the microseconds of each round by name."""
    text = output_of(program, "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
                     f"--benchmark_repetitions={repetitions}", f"--benchmark_min_time={min_time}")
    rounds = {}
    for run in json.loads(text)["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        name = "/".join(part for part in run["run_name"].split("/")
                        if part not in ("real_time", "manual_time") and ":" not in part)
        rounds.setdefault(name, []).append(run["real_time"] / 1e3)
    return rounds


def instructions(program, *arguments):
    """Runs it under callgrind; returns the instructions of each part that it has marked, by its name."""
    with tempfile.TemporaryDirectory() as folder:
        output_of("valgrind", "--quiet", "--tool=callgrind", "--instr-atstart=no",
                  f"--callgrind-out-file={folder}/%p", program, *arguments)
        # A child that was forked before it became another program leaves a file without a mark.
        dumps = [file.read_text(errors="replace") for file in Path(folder).iterdir()]
    found = (re.search(r"^desc: Trigger: Client Request: (\S+)$.*^totals: (\d+)$", dump, re.MULTILINE | re.DOTALL)
             for dump in dumps)
    return {match[1]: int(match[2]) for match in found if match}


def process_of(*command):
    """Runs it: milliseconds, milliseconds of processor time and peak of resident megabytes."""
    start = time.perf_counter()
    process = subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL)
    # The peak that wait4 reports includes that of the forked copy of this process, so the child's own is read until it
    # ends; growth in the last 2 ms is missed.
    status_file, peak = Path(f"/proc/{process.pid}/status"), 0
    ended = select.poll()
    with os.fdopen(os.pidfd_open(process.pid)) as handle:
        ended.register(handle, select.POLLIN)
        while not ended.poll(2):
            found = re.search(r"VmHWM:\s+(\d+)", status_file.read_text())
            peak = int(found[1]) / 1024 if found else peak
    _, status, usage = os.wait4(process.pid, 0)
    milliseconds = (time.perf_counter() - start) * 1e3
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command} ended with {process.returncode}")
    return milliseconds, (usage.ru_utime + usage.ru_stime) * 1e3, peak
