"""Runs the benchmark programs of build/release and prints the results as tables. Started by scripts/bench."""

import argparse
import json
import math
import resource
import statistics
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

import emulatorload
import page
import queuerows
from frhost import Frhost
from machine import about
from programs import google_benchmark, instructions, output_of, process_of, say
from report import Row, tables, write_docs

TOP = Path(__file__).resolve().parent.parent
BUILD = TOP / "build" / "release"


@dataclass
class Workload:
    """How much is measured."""
    rounds: int = 9
    seconds: float = 0.08
    # Receipts in each round, and in the round whose instructions are counted.
    equal_rounds: int = 15
    equal_receipts: tuple = (200, 40)
    thread_rounds: int = 5
    thread_milliseconds: int = 700
    many: int = 10_000
    soak: int = 200_000
    composed: int = 20_000
    emulator_rounds: int = 3
    emulator_sells: int = 50_000
    emulator_kept: tuple = (1000, 20_000, 150_000)
    queue: queuerows.Load = queuerows.Load()


# Shows whether everything runs, not how fast.
QUICK = Workload(3, 0.01, 3, (20, 20), 1, 200, 3000, 5000, 2000, 1, 2000, (100, 1000, 2000),
                 queuerows.QUICK)


def receipts(work):
    say(f"receiptbench: {work.rounds} rounds in random order")
    rounds = google_benchmark(BUILD / "bench" / "receiptbench", work.rounds, work.seconds)
    return [*whole_receipt(rounds), *composer(rounds), *reply(rounds)]


def whole_receipt(rounds):
    baselines = {"libcurl": "curl", "Qt": "qnam", "PHP": "php", "bare socket": "raw"}
    if "receipt/php/plain/1" not in rounds:
        say("without PHP; with php-cli and php-curl installed it is measured too")
        del baselines["PHP"]
    for wire in ("plain", "tls"):
        for who, close in (("plugin", "documentClose"), ("driver", "checkClose")):
            for lines in (1, 10, 100):
                yield Row("Whole receipt", f"{lines} {wire} {close}", "µs", rounds[f"receipt/{who}/{wire}/{lines}"],
                          {name: rounds[f"receipt/{baseline}/{wire}/{lines}"] for name, baseline in baselines.items()})


# Of ours to the equal work.
EQUAL_AT_MOST = {"µs": 1.05, "CPU µs": 1.10, "instructions": 1.10}


def equal_work(work):
    say(f"equalbench: {work.equal_rounds} rounds in random order, and one under callgrind")
    program = BUILD / "bench" / "equalbench"
    timed, counted = work.equal_receipts
    lines = output_of(program, work.equal_rounds, timed).splitlines()
    figures = {}
    for run in map(json.loads, lines):
        for key, unit in (("wall_us", "µs"), ("cpu_us", "CPU µs")):
            figures.setdefault((run["case"], unit, run["contender"]), []).append(run[key])
    for mark, count in instructions(program, 1, counted).items():
        if mark != "begin":
            contender, case = mark.split("/", 1)
            sold = max(1, counted // int(case.rpartition("/")[2])) * int(case.rpartition("/")[2])
            figures[case, "instructions", contender] = [count / sold]
    for case in dict.fromkeys(case for case, _, _ in figures):
        wire, size, registers = case.split("/")
        for unit, limit in EQUAL_AT_MOST.items():
            yield Row("Whole receipt, equal work", f"{size} {wire}, {registers} registers" if registers != "1" else
                      f"{size} {wire}", unit, figures[case, unit, "ours"],
                      {"equal work": figures[case, unit, "equal"], "bare socket": figures[case, unit, "raw"]},
                      ratios_at_most={"equal work": limit})


def composer(rounds):
    sizes = (1, 10, 100, 1000, 10_000)

    def a_line(who, lines):
        return [time / lines for time in rounds[f"compose/{who}/{lines}"]]

    for lines in sizes:
        yield Row("Composer", f"{lines:,} line" + "s" * (lines > 1), "µs a line", a_line("ours", lines),
                  {"QJsonObject": a_line("qjson", lines)}, ratios_at_most={"QJsonObject": 1.0})
    for first in (1, 2, 3):
        ours, baseline = (exponents(sizes[first:], [rounds[f"compose/{who}/{lines}"] for lines in sizes[first:]])
                          for who in ("ours", "qjson"))
        yield Row("Composer", f"growth from {sizes[first]:,} to 10,000", "exponent", ours, {"QJsonObject": baseline},
                  at_most=1.05)


def exponents(sizes, times):
    """The power of the size with which time grows, for each round."""
    logarithms = [math.log(size) for size in sizes]
    return [statistics.linear_regression(logarithms, [math.log(time) for time in one]).slope for one in zip(*times)]


def reply(rounds):
    for size in (300, 5_000_000):
        yield Row("Reply to lastResponse and payload", f"{size:,} bytes", "µs", rounds[f"reply/ours/{size}"],
                  {"bare parse": rounds[f"reply/parse/{size}"]})


def registers(work):
    say(f"registersbench: {work.thread_rounds} rounds in threads")
    program = BUILD / "bench" / "registersbench"
    lines = output_of(program, "threads", work.thread_rounds, work.thread_milliseconds).splitlines()
    runs = [json.loads(line) for line in lines]
    for threads in (1, 5, 20, 100):
        for key, unit in (("sells_per_second", "receipts a second"), ("cpu_us", "CPU µs a receipt")):
            ours, baseline = ([run[key] for run in runs if run["contender"] == who and run["threads"] == threads]
                              for who in ("ours", "curl"))
            yield Row("Many registers, a thread each, receipts of 3 lines", str(threads), unit, ours,
                      {"libcurl": baseline})
    say(f"registersbench: {work.many} registers in one process")
    many = json.loads(output_of(program, "many", work.many))
    for key, unit, limit in (("kb_each", "kB resident each", 20), ("kb_allocated", "kB allocated each", None),
                             ("files", "descriptors while some sell", None),
                             ("files_when_idle", "descriptors when all are idle", 0)):
        yield Row("Many registers in one process", f"{work.many:,}", unit, [many[key]], at_most=limit)
    say(f"registersbench: a soak of {work.soak}")
    grown = json.loads(output_of(program, "soak", work.soak))
    for key, unit in (("rss_growth_kb", "kB resident"), ("files_growth", "open files")):
        yield Row("Growth in a soak", f"{work.soak:,} receipts", unit, [grown[key]], at_most=0)


# What a start of frhost loads, each on top of the one before: Network, Gui and Xml come with every plugin by the host's
# contract, libcurl brings libraries for all that it can do.
LOADED = (("Qt Core", ["libQt6Core.so.6"]), ("Network, Gui, Xml", ["libQt6Network.so.6", "libQt6Gui.so.6", "libQt6Xml.so.6"]),
          ("libcurl", ["libcurl.so.4"]), ("the plugin", [BUILD / "plugins" / "libatolonline.so"]))


def start(work):
    libraries = []
    for name, added in LOADED:
        libraries += added
        milliseconds, processor, _ = zip(*(process_of(BUILD / "bench" / "loadbench", *libraries)
                                           for _ in range(work.rounds)))
        case = name if name == LOADED[0][0] else f"and {name}"
        yield Row("Loading libraries, and nothing else", case, "ms", milliseconds)
        yield Row("Loading libraries, and nothing else", case, "CPU ms", processor)


def host_program(work):
    say(f"frhost: start, describe, compose of {work.composed}")
    yield from start(work)
    with tempfile.TemporaryDirectory() as folder:
        commands = Frhost(BUILD / "bin" / "frhost", folder)
        commands.require_golden(TOP / "bench" / "golden" / "request-1.json")
        for name, command in (("describe", commands.describe()), ("compose 1", commands.compose_many(1))):
            milliseconds, processor, _ = zip(*(process_of(*command) for _ in range(work.rounds)))
            yield Row("frhost as a process", name, "ms", milliseconds, at_most=15 if name == "describe" else None)
            yield Row("frhost as a process", name, "CPU ms", processor)
        # A single receipt does not touch all code.
        many, few = ([process_of(*commands.compose_many(count))[2] for _ in range(3)]
                     for count in (work.composed, work.composed // 10))
        yield Row("frhost as a process", f"compose {work.composed:,}", f"peak MB above that of {work.composed // 10:,}",
                  [statistics.median(many) - statistics.median(few)], at_most=2.0)


def emulator(work):
    say(f"fremulator: {work.emulator_sells} sells in {work.emulator_rounds} rounds")
    program = BUILD / "bin" / "fremulator"
    # Each connection needs a socket in the emulator and one here.
    resource.setrlimit(resource.RLIMIT_NOFILE, (resource.getrlimit(resource.RLIMIT_NOFILE)[1],) * 2)
    with tempfile.TemporaryDirectory() as folder:
        for case, connections, in_file, at_least in (("in memory", 64, False, 5000),
                                                     ("in memory, 1000 connections", 1000, False, 5000),
                                                     ("in a file", 64, True, None)):
            runs = [emulatorload.figures(program, connections, work.emulator_sells,
                                         *(("--db", f"{folder}/{i}") if in_file else ()))
                    for i in range(work.emulator_rounds)]
            rates, medians, slowest, processor = zip(*runs)
            yield Row("The emulator under load", case, "sells a second", rates, at_least=at_least)
            yield Row("The emulator under load", case, "median ms", medians)
            yield Row("The emulator under load", case, "99th percentile ms", slowest)
            yield Row("The emulator under load", case, "CPU µs a sell", processor)
    keep, warm_up, sells = work.emulator_kept
    warm, after = emulatorload.memory(program, keep, warm_up, sells)
    # The allocator may need a twentieth and a mebibyte more; a leak of 20 bytes a sell exceeds that.
    if after > warm + warm / 20 + 1024:
        sys.exit(f"the emulator's memory grows with the sells: {warm} kB, {after} kB after {sells:,} more")
    yield Row("The emulator under load", f"--keep {keep}, {sells:,} sells", "kB resident more", [after - warm])


def queue(work):
    return queuerows.rows(BUILD, work.queue)


MEASURES = {"equal": equal_work, "receipts": receipts, "registers": registers, "frhost": host_program,
            "emulator": emulator, "queue": queue}


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench")
    parser.add_argument("--json", action="store_true", help="print the results as JSON")
    parser.add_argument("--quick", action="store_true", help="few rounds: whether it runs, not how fast")
    parser.add_argument("--docs", action="store_true", help="also write docs/performance.md and what belongs to it")
    parser.add_argument("--only", choices=MEASURES, help="measure this alone; of the documents, write what it is about")
    options = parser.parse_args()
    machine = about(" ".join(["scripts/bench", *sys.argv[1:]]))
    shown = sys.stderr if options.json else sys.stdout
    print(machine, file=shown)
    rows = []
    for name in [options.only] if options.only else MEASURES:
        found = list(MEASURES[name](QUICK if options.quick else Workload()))
        rows += found
        print(tables(found), file=shown, flush=True)
    if options.json:
        print(json.dumps({"machine": machine, "results": [row.record() for row in rows]}, indent=1, ensure_ascii=False))
    if options.docs:
        write_pages(rows, machine, options.only)


def write_pages(rows, machine, only):
    docs = TOP / "docs"
    if scale := page.scale(rows, machine):
        write_docs(docs / "scale.md", scale)
    if not only:
        write_docs(docs / "performance.md", page.page(rows, machine))
        write_docs(docs / "performance-run.md", machine + "\n" + tables(rows))
        (docs / "performance.svg").write_text(page.picture(page.Run(rows)))


if __name__ == "__main__":
    main()
