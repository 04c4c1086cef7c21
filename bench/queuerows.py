"""The figures of the queue, each with its baseline in the same run."""

import contextlib
import json
import os
import resource
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from datetime import datetime
from pathlib import Path

import emulatorload
import postgres
from frhost import receipt
from programs import output_of, process_of, say
from report import Row

IN_FILE, ON_SERVER = "The queue in a file", "The queue on PostgreSQL"


def compared(subject, case, unit, ours, baseline, at_most):
    """Each case has another baseline, which its name tells."""
    return Row(subject, case, unit, ours, {"baseline": baseline}, ratios_at_most={"baseline": at_most})


@dataclass(frozen=True)
class Load:
    """How much is measured."""
    rounds: int = 5
    added: int = 200
    batch: int = 100_000
    worked: int = 500
    served: int = 1000
    waiting: int = 1_000_000
    claims: int = 60
    claim_rounds: int = 3
    claim_seconds: int = 2
    claim_receipts: int = 20_000
    kills: int = 3


QUICK = Load(1, 50, 1000, 50, 40, 20_000, 20, 1, 1, 10_000, 1)


class Shop:
    """A register and its queue, with everything in the folder."""

    def __init__(self, build, folder, port, parallel, store="queue.db", interval=200):
        self.folder = Path(folder)
        config = self.folder / "register.ini"
        config.write_text(f"[register]\nurl=http://127.0.0.1:{port}/possystem/v4/\nlogin=test\npassword=test\n"
                          "groupCode=test\nemail=shop@example.com\ninn=7700000000\n"
                          f"paymentAddress=https://shop.example.com\nrequestInterval={interval}\n"
                          f"[queue]\nstore={store}\nparallel={parallel}\n")
        config.chmod(0o600)
        self.command = [build / "bin" / "frhost", "--config", config]
        os.environ["XDG_STATE_HOME"] = str(self.folder / "state")

    def queue(self, *arguments):
        return [*self.command, "queue", *arguments]

    def receipts(self, prefix, count):
        file = self.folder / f"{prefix}-{count}.jsonl"
        with file.open("w") as lines:
            for i in range(count):
                lines.write(json.dumps(receipt(f"{prefix}-{i:06}", 3), ensure_ascii=False) + "\n")
        return file

    def require_registered(self, count):
        states = json.loads(output_of(*self.queue("stats", "--json")))["states"]
        if states != {"registered": count}:
            sys.exit(f"{count} receipts should be registered: {states}")


def rows(build, load):
    program = build / "bench" / "queuebench"
    yield from one_add(program, load)
    yield from batch(build, program, load)
    yield from processor_time(build, load)
    yield from throughput(build, load)
    yield from claim(program, load)
    yield from recovery(build, load, IN_FILE, 1000, contextlib.nullcontext())
    if not postgres.programs():
        say("without PostgreSQL; with postgresql and libqt6sql6-psql installed the queue on it is measured too")
        return
    with postgres.server() as server:
        yield from claims_on_server(build, load, server)
        yield from stays(build, load, server)
        yield from recovery(build, load, ON_SERVER, 2000, server)


def rounds_of(*command):
    """The figures of each round by their name."""
    lines = [json.loads(line) for line in output_of(*command).splitlines()]
    return {name: [line[name] for line in lines] for name in lines[0]}


def one_add(program, load):
    say(f"queuebench: {load.rounds} rounds of {load.added} receipts added one by one")
    with tempfile.TemporaryDirectory() as folder:
        found = rounds_of(program, "add", folder, load.rounds, load.added)
    yield compared(IN_FILE, "one add until durable, to one bare insert", "µs", found["ours"], found["bare"], 1.25)


# Bytes: what remains of a receipt is digests and a line; `compose` may take as many.
EACH_IN_MEMORY = 111


def batch(build, program, load):
    say(f"frhost: {load.batch:,} receipts by one add")
    with tempfile.TemporaryDirectory() as folder:
        shop = Shop(build, folder, 1, 1)
        many, few = (shop.receipts("batch", count) for count in (load.batch, load.batch // 10))
        checked = process_of(*shop.command, "compose", many)[0]
        inserted = float(output_of(program, "batch", folder, load.batch)) * load.batch / 1000
        # The queue knows the receipts of the few afterwards; the many are others.
        few_peak = process_of(*shop.queue("add", few))[2]
        (shop.folder / "queue.db").unlink()
        added, _, many_peak = process_of(*shop.queue("add", many))
    yield compared(IN_FILE, f"{load.batch:,} receipts by one add, to compose and bare inserts in one transaction", "ms",
                   [added], [checked + inserted], 1.3)
    yield Row(IN_FILE, f"{load.batch:,} receipts by one add", f"peak MB above that of {load.batch // 10:,}",
              [many_peak - few_peak], at_most=EACH_IN_MEMORY * (load.batch - load.batch // 10) / 1e6)


def processor_milliseconds(*command):
    """What it writes, and its time."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    written = output_of(*command)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return written, (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) * 1e3


def processor_time(build, load):
    say(f"frhost: processor time of {load.worked} receipts through the queue")
    with tempfile.TemporaryDirectory() as folder, emulatorload.running(build / "bin" / "fremulator") as (_, port):
        shop = Shop(build, folder, port, 32)
        output_of(*shop.queue("add", shop.receipts("worked", load.worked)))
        _, worked = processor_milliseconds(*shop.queue("work", "--until-empty"))
        shop.require_registered(load.worked)
        answers, sent = processor_milliseconds(*shop.command, "--json", "send", shop.receipts("sent", load.worked))
        uuids = [answer["uuid"] for answer in map(json.loads, answers.splitlines()) if "uuid" in answer]
        # What `info` does for one, without a start for each.
        _, asked = processor_milliseconds(*shop.command, "collect", *uuids)
    yield compared(IN_FILE, f"{load.worked:,} receipts by work, to send and one question about each",
                   "CPU µs a receipt", [worked * 1e3 / load.worked], [(sent + asked) * 1e3 / load.worked], 1.5)


def throughput(build, load):
    registers, shortest, longest = 20, 0.4, 0.6
    expected = load.served * (shortest + longest) / 2 / registers
    say(f"frhost: {load.served:,} receipts through {registers} registers, {expected:.0f} s")
    with tempfile.TemporaryDirectory() as folder:
        groups = Path(folder) / "emulator.json"
        groups.write_text(json.dumps({"groups": [{"code": "test", "registers": registers}]}))
        with emulatorload.running(build / "bin" / "fremulator", "--config", groups,
                                  "--latency", f"{shortest},{longest}") as (_, port):
            shop = Shop(build, folder, port, registers, interval=500)
            output_of(*shop.queue("add", shop.receipts("served", load.served)))
            seconds = process_of(*shop.queue("work", "--until-empty"))[0] / 1e3
            shop.require_registered(load.served)
    case = (f"{load.served:,} receipts, {registers} registers that take {shortest} to {longest} s, "
            "to registers that never rest")
    yield compared(IN_FILE, case, "s", [seconds], [expected], 1.10)


def claim(program, load):
    few = 1000
    say(f"queuebench: claims with {load.waiting:,} receipts waiting")
    with tempfile.TemporaryDirectory() as folder:
        found = rounds_of(program, "waiting", folder, few, load.waiting, load.rounds, load.claims)
    yield compared(IN_FILE, f"a claim with {load.waiting:,} waiting, to one with {few:,}", "µs",
                   found["many"], found["few"], 1.2)


# What claims a receipt, without its history and what a worker wants to know of it.
BARE_CLAIM = """UPDATE receipts SET state = 'sent', worker = 1, attempt = attempt + 1, maybeSent = 1 WHERE number =
 (SELECT number FROM receipts WHERE register = 1 AND held = 0 AND (state IN ('queued', 'unknown') OR state = 'incomplete')
  AND due <= 0 ORDER BY due, number LIMIT 1 FOR UPDATE SKIP LOCKED)"""
WORKERS = 8


def claims_on_server(build, load, server):
    say(f"claimsbench: {load.claim_rounds} rounds of {load.claim_seconds} s, and pgbench")
    program = build / "bench" / "claimsbench"
    ours, bare = [], []
    for i in range(load.claim_rounds):
        for name, into in ((f"ours{i}", ours), (f"bare{i}", bare)):
            service = server.service(name)
            place = f"postgresql:service={service}"
            output_of(program, "fill", place, load.claim_receipts)
            server.analyze(service)
            if into is ours:
                into.append(float(output_of(program, "claim", place, WORKERS, load.claim_seconds)))
            else:
                into.append(server.statement_microseconds(service, BARE_CLAIM, WORKERS, load.claim_seconds))
    # 0.8 times as many claims a second.
    yield compared(ON_SERVER, f"a claim, {WORKERS} workers, to the bare statement by pgbench", "µs", ours, bare, 1.25)


STAY = f"a receipt from add to registered, {WORKERS} workers"
STORED = """SELECT (pg_total_relation_size('receipts') + pg_total_relation_size('events')) / (SELECT count(*) FROM receipts)"""


def stays(build, load, server):
    say("claimsbench: receipts that are added, claimed and concluded")
    found, sizes = [], []
    for i in range(load.claim_rounds):
        service = server.service(f"stays{i}")
        found.append(float(output_of(build / "bench" / "claimsbench", "stay", f"postgresql:service={service}", WORKERS,
                                     load.claim_seconds)))
        sizes.append(server.value(service, STORED) / 1024)
    yield Row(ON_SERVER, STAY, "µs", found)
    yield Row(ON_SERVER, STAY, "kB stored", sizes)


KILLED = "from kill -9 of a worker to the next claim"


def recovery(build, load, subject, limit, server):
    say(f"frhost: {load.kills} workers are killed")
    found = []
    with tempfile.TemporaryDirectory() as folder, \
            emulatorload.running(build / "bin" / "fremulator", "--latency", "60") as (_, port):
        for i in range(load.kills):
            there = Path(folder) / str(i)
            there.mkdir()
            store = "queue.db" if subject == IN_FILE else f"postgresql:service={server.service(f'killed{i}')}"
            found.append(recovery_milliseconds(Shop(build, there, port, 1, store)))
    yield Row(subject, KILLED, "ms", found, at_most=limit)


def recovery_milliseconds(shop):
    """By the times in the receipt's history, which are this machine's."""
    output_of(*shop.queue("add", shop.receipts("killed", 1)))
    with worker(shop) as first:
        claims_of(shop, 1)
        with worker(shop):
            # The second has asked for its token, found nothing and goes on looking.
            time.sleep(0.7)
            killed = time.time() * 1e3
            first.kill()
            return claims_of(shop, 2)[1] - killed


@contextlib.contextmanager
def worker(shop):
    command = [str(part) for part in shop.queue("work")]
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        yield process
    finally:
        process.kill()
        process.wait()


def claims_of(shop, count):
    """Waits for so many claims of the only receipt; returns their times."""
    for _ in range(200):
        history = json.loads(output_of(*shop.queue("show", "killed-000000", "--json")))["events"]
        claims = [datetime.fromisoformat(event["at"]).timestamp() * 1e3
                  for event in history if event["event"] == "claimed"]
        if len(claims) >= count:
            return claims
        time.sleep(0.1)
    sys.exit("a worker does not claim the receipt")
