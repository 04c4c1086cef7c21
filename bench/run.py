"""Runs the benchmark programs of build/release and prints their results as one table. Started by scripts/bench."""

import argparse
import datetime
import json
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from frhost import Frhost, median_of

TOP = Path(__file__).resolve().parent.parent
BUILD = TOP / "build" / "release"
BENCH = BUILD / "bench"
SIZES = (1, 10, 100)


def say(text):
    print("==>", text, file=sys.stderr, flush=True)


def output_of(*command):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"{command[0]} failed with {done.returncode}")
    return done.stdout


def google_benchmark(group, repetitions, min_time):
    """By name the microseconds of each round."""
    say(f"{group}: {repetitions} rounds in random order")
    text = output_of(BENCH / "receiptbench", f"--benchmark_filter=^{group}/", "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
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


def medians(rounds):
    return {name: statistics.median(times) for name, times in rounds.items()}


def spread(times):
    """Half the distance between the quartiles, in percent of the median."""
    first, middle, third = statistics.quantiles(times, n=4)
    return (third - first) / 2 / middle * 100


class Table:
    """Rows of cells; a cell that has a limit says when it is over it."""

    def __init__(self, title, columns):
        self.title, self.columns, self.rows, self.records = title, columns, [], []

    def add(self, *cells):
        shown = []
        for cell in cells:
            if isinstance(cell, Limited):
                self.records.append({"row": self.title, "case": str(cells[0]), "column": self.columns[len(shown)],
                                     "value": cell.value, "limit": cell.limit, "met": cell.met})
            elif isinstance(cell, (int, float)):
                self.records.append({"row": self.title, "case": str(cells[0]), "column": self.columns[len(shown)],
                                     "value": cell})
            shown.append(number(cell) if isinstance(cell, (int, float)) else str(cell))
        self.rows.append(shown)

    def text(self):
        widths = [max(len(line[i]) for line in [self.columns, *self.rows]) for i in range(len(self.columns))]
        lines = [" | ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                            for i, (cell, width) in enumerate(zip(line, widths)))
                 for line in [self.columns, *self.rows]]
        lines.insert(1, "-|-".join("-" * width for width in widths))
        return f"{self.title}\n\n" + "\n".join(f"| {line} |" for line in lines) + "\n"


class Limited:
    def __init__(self, value, limit, digits=2):
        self.value, self.limit, self.digits = value, limit, digits

    @property
    def met(self):
        return self.value <= self.limit

    def __str__(self):
        return f"{self.value:,.{self.digits}f}" + ("" if self.met else f" (over {self.limit})")


class AtLeast(Limited):
    @property
    def met(self):
        return self.value >= self.limit

    def __str__(self):
        return f"{self.value:,.0f}" + ("" if self.met else f" (under {self.limit:,})")


def number(value):
    if isinstance(value, int) or value >= 1000:
        return f"{value:,.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def receipts(repetitions):
    rounds = google_benchmark("receipt", repetitions, 0.08)
    times = medians(rounds)
    has_php = "receipt/php/plain/1" in times
    table = Table("1. Whole receipt, microseconds",
                  ["lines", "ours", "±%", "to libcurl", "to Qt", "to PHP", "libcurl", "Qt", "PHP", "bare socket"])
    for wire in ("plain", "tls"):
        for contender, name in (("plugin", "documentClose"), ("driver", "checkClose")):
            for size in SIZES:
                at = lambda who: times.get(f"receipt/{who}/{wire}/{size}")
                ours = at(contender)
                if ours is None:
                    continue
                php = at("php")
                to_php = "-" if php is None else Limited(ours / php, 1.0) if size <= 10 else ours / php
                table.add(f"{size} {wire} {name}", ours, spread(rounds[f"receipt/{contender}/{wire}/{size}"]),
                          Limited(ours / at("curl"), 1.10), Limited(ours / at("qnam"), 0.45),
                          to_php, at("curl"), at("qnam"), php or "-", at("raw"))
    if not has_php:
        say("PHP with its curl extension is not installed; its columns stay empty (php-cli, php-curl)")
    return [table]


def composer(repetitions):
    times = medians(google_benchmark("compose", repetitions, 0.05))
    sizes = (*SIZES, 1000, 10000)
    table = Table("2. Composer", ["lines", "us a line", "to QJsonObject", "QJsonObject us a line"])
    for size in sizes:
        ours, baseline = times[f"compose/ours/{size}"], times[f"compose/qjson/{size}"]
        table.add(f"{size}", ours / size, Limited(ours / baseline, 1.0), baseline / size)
    slopes = Table("2. Composer, slopes to 10,000 lines", ["of", "from 10", "from 100", "from 1,000"])
    for of, values, limit in (("time", {n: times[f"compose/ours/{n}"] for n in sizes}, 1.05),
                              ("time of QJsonObject", {n: times[f"compose/qjson/{n}"] for n in sizes}, None)):
        found = [slope([(n, values[n]) for n in sizes[first:]]) for first in (1, 2, 3)]
        slopes.add(of, *(Limited(value, limit) if limit else value for value in found))
    return [table, slopes]


def slope(points):
    """Exponent of growth, by least squares in logarithms."""
    from math import log
    xs, ys = [log(x) for x, _ in points], [log(y) for _, y in points]
    x_mean, y_mean = statistics.mean(xs), statistics.mean(ys)
    return sum((x - x_mean) * (y - y_mean) for x, y in zip(xs, ys)) / sum((x - x_mean) ** 2 for x in xs)


def replies(repetitions):
    times = medians(google_benchmark("reply", repetitions, 0.05))
    table = Table("3. Reply to lastResponse and payload, microseconds", ["bytes", "ours", "bare parse", "ratio"])
    for size in (300, 5000000):
        ours, parse = times[f"reply/ours/{size}"], times[f"reply/parse/{size}"]
        table.add(f"{size:,}", ours, parse, ours / parse)
    return [table]


def registers(rounds, milliseconds):
    say(f"registersbench: {rounds} rounds")
    runs = [json.loads(line) for line in output_of(BENCH / "registersbench", "threads", rounds, milliseconds).splitlines()]
    table = Table("4. Many registers, a thread each, receipts of 3 lines",
                  ["registers", "sells a second", "to libcurl", "CPU us a receipt", "to libcurl"])
    for threads in (1, 5, 20, 100):
        at = lambda who, key: float(statistics.median(
            run[key] for run in runs if run["contender"] == who and run["threads"] == threads))
        ratios = lambda key: (at("ours", key), at("ours", key) / at("curl", key))
        table.add(f"{threads}", *ratios("sells_per_second"), *ratios("cpu_us"))
    return [table]


def soak(count):
    say(f"registersbench: {count} receipts through one driver")
    run = json.loads(output_of(BENCH / "registersbench", "soak", count))
    table = Table("5. Soak", ["receipts", "growth kB", "growth of files"])
    table.add(f"{count:,}", Limited(run["rss_growth_kb"], 0, 0), Limited(run["files_growth"], 0, 0))
    return [table]


def whole_program(count):
    say(f"frhost: describe, compose of {count}")
    with tempfile.TemporaryDirectory() as folder:
        frhost = Frhost(BUILD / "bin" / "frhost", folder)
        frhost.require_golden(TOP / "bench" / "golden" / "request-1.json")
        table = Table("6. frhost as a process", ["command", "ms", "CPU ms", "peak MB"])
        table.add("describe", *median_of(9, frhost.describe()))
        table.add("compose 1", *median_of(9, frhost.compose(1)))
        many = median_of(3, frhost.compose(count))
        table.add(f"compose {count:,}", *many)
        # One receipt alone does not touch all code.
        few = median_of(3, frhost.compose(count // 10))
        memory = Table("6. Memory with the length of the file",
                       ["receipts", f"peak MB above that of {count // 10:,}"])
        memory.add(f"compose {count:,}", Limited(many[2] - few[2], 2.0, 1))
    return [table, memory]


def emulator():
    """The emulator's own load test."""
    runner = TOP / "bench" / "emulator" / "run"
    say("the emulator under load")
    table = Table("7. Sells a second that the emulator takes", ["emulator", "sells a second", "median ms", "99th ms"])
    pattern = r"^(.*?): .* (\d+) a second, median ([\d.]+) ms, 99th ([\d.]+) ms$"
    for title, rate, median, slowest in re.findall(pattern, output_of(runner, BUILD), re.MULTILINE):
        table.add(title, int(rate) if title == "in a file" else AtLeast(int(rate), 5000), float(median), float(slowest))
    return [table]


def busy_share():
    """Of all cores in the last second, from 0 to 1."""
    def look():
        times = [int(field) for field in Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:]]
        return sum(times), times[3] + times[4]
    (all_before, idle_before), _ = look(), time.sleep(1)
    all_after, idle_after = look()
    return 1 - (idle_after - idle_before) / (all_after - all_before)


def wait_for_idleness(seconds=60):
    """Waits until the machine has been idle for three seconds; returns how busy it was in the last one."""
    quiet = 0
    for _ in range(seconds):
        busy = busy_share()
        quiet = quiet + 1 if busy < 0.05 else 0
        if quiet == 3:
            return busy
    say("the machine does not become idle; its figures are worth nothing")
    return busy


def machine():
    busy = wait_for_idleness()
    model = next((line.split(":", 1)[1].strip() for line in Path("/proc/cpuinfo").read_text().splitlines()
                  if line.startswith("model name")), platform.machine())
    cores = Path("/proc/cpuinfo").read_text().count("processor\t")
    versions = []
    for package in ("libqt6core6", "libcurl4", "gcc", "php-cli"):
        found = subprocess.run(["dpkg-query", "-W", "-f=${Package} ${Version}", package], capture_output=True, text=True,
                               check=False)
        versions += [found.stdout] if found.returncode == 0 and found.stdout.split()[1:] else []
    return [f"{model}, {cores} cores, Linux {platform.release()}, {busy:.0%} busy at the start",
            ", ".join(versions), f"{datetime.datetime.now():%Y-%m-%d %H:%M}, scripts/bench {' '.join(sys.argv[1:])}".rstrip()]


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench")
    parser.add_argument("--json", action="store_true", help="print the results as JSON")
    parser.add_argument("--quick", action="store_true", help="few rounds: whether it runs, not how fast")
    parser.add_argument("--docs", action="store_true",
                        help="also write the tables into docs/performance.md")
    options = parser.parse_args()
    about = machine()
    tables, shown = [], sys.stderr if options.json else sys.stdout

    def show(*done):
        tables.extend(done)
        for table in done:
            print(table.text(), file=shown, flush=True)

    print("\n".join(about) + "\n", file=shown)
    repetitions = 3 if options.quick else 9
    show(*receipts(repetitions))
    show(*composer(repetitions))
    show(*replies(repetitions))
    show(*registers(1 if options.quick else 5, 200 if options.quick else 700))
    show(*soak(5000 if options.quick else 200000))
    show(*whole_program(2000 if options.quick else 20000))
    show(*emulator())
    if options.json:
        print(json.dumps({"about": about, "results": [record for table in tables for record in table.records]}, indent=1))
    if options.docs:
        write_docs("\n".join(about) + "\n\n" + "\n".join(table.text() for table in tables))


def write_docs(report):
    page = TOP / "docs" / "performance.md"
    begin, end = "<!-- begin: scripts/bench --docs -->\n", "<!-- end -->\n"
    before, rest = page.read_text().split(begin)
    page.write_text(before + begin + "\n" + report + "\n" + end + rest.split(end)[1])


if __name__ == "__main__":
    main()
