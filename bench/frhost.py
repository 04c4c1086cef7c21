"""frhost as a whole process: seconds and peak memory."""

import json
import os
import re
import select
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

LINES = 3


def measured(command):
    """Runs it: its output, milliseconds, milliseconds of processor time and peak of resident megabytes."""
    start = time.perf_counter()
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen([str(part) for part in command], stdout=output)
        # wait4's own peak begins with that of the process that forks, ours. What grows in the last 2 ms is missed.
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
        output.seek(0)
        text = output.read().decode()
    if process.returncode != 0:
        sys.exit(f"{command} ended with {process.returncode}")
    return text, milliseconds, (usage.ru_utime + usage.ru_stime) * 1e3, peak


def receipt(number, lines):
    positions = [{"name": f"Молоко «Луговое» 3,2 %, бутылка № {i + 1}", "price": 15 + i, "quantity": 1, "sum": 15 + i,
                  "taxCode": i % 6} for i in range(lines)]
    return {"id": number, "requisites": [{"tag": 1008, "value": "buyer@example.com"}, {"tag": 1055, "value": 1}],
            "positions": positions, "payments": [{"type": 1, "sum": sum(line["sum"] for line in positions)}]}


class Frhost:
    def __init__(self, program, folder):
        self.folder = Path(folder)
        config = self.folder / "register.ini"
        config.write_text("[register]\nurl=http://127.0.0.1/v4/\nlogin=bench\npassword=bench\ngroupCode=shop_group\n"
                          "email=shop@example.com\ninn=7700000000\npaymentAddress=https://shop.example.com\n")
        config.chmod(0o600)
        self.command = [program, "--config", config]

    def file_of(self, count, lines=LINES):
        file = self.folder / f"{count}-{lines}.jsonl"
        if not file.exists():
            with file.open("w") as out:
                for i in range(count):
                    id_ = "till-7-000123" if count == 1 else f"till-7-{i:06}"
                    out.write(json.dumps(receipt(id_, lines), ensure_ascii=False) + "\n")
        return file

    def require_golden(self, golden):
        text = measured([*self.command, "compose", self.file_of(1, 1)])[0].strip()
        stamp = '"timestamp":"05.03.2024 14:07:09"'
        if re.sub(r'"timestamp":"[^"]*"', stamp, text) != golden.read_text():
            sys.exit("frhost compose: another text than the golden one")

    def describe(self):
        return [*self.command, "describe"]

    def compose(self, count):
        return [*self.command, "compose", self.file_of(count)]


def median_of(rounds, command):
    runs = [measured(command)[1:] for _ in range(rounds)]
    return [statistics.median(column) for column in zip(*runs)]
