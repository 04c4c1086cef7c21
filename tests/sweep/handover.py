"""Kills and breaks at every system call of `frhost queue add` and `frhost queue work`."""
import json
import tempfile
from dataclasses import dataclass
from pathlib import Path

from judgement import Finding, judge_handing_over, judge_queue
from programs import LIMIT, Program
from sale import Verdict
from till import Said, Till
from tracing import KILL, Call, Counter, Injection

# A disk that fails and one that is full, at the calls that concern files.
DISK_FAULTS = ["EIO", "ENOSPC"]
OF_FILES = set("fdatasync fsync ftruncate mkdir openat pread64 pwrite64 read unlink write".split())


class Queue:
    """A shop that queues. Its folder is deleted at the end of the `with` block."""

    def __init__(self, bench, receipts=2):
        self.temporary = tempfile.TemporaryDirectory(dir=bench.folder)
        self.folder = Path(self.temporary.name)
        self.till = Till(bench.frhost, self.folder)
        self.emulator = bench.emulator()
        self.receipts = [f"{self.folder.name}-{number}" for number in range(1, receipts + 1)]
        self.file = self.till.receipts(self.receipts)
        self.store = bench.store(self.folder)
        self.verdict = Verdict()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.temporary.cleanup()

    def add(self, tracer=None):
        return self._run("add", self.file, tracer=tracer)

    def work(self, tracer=None):
        return self._run("work", "--until-empty", tracer=tracer)

    def listed(self):
        """What the store holds: its entries by id."""
        return self._run("list").lines

    def settle(self):
        """Hands over again, works again, and compares with the service."""
        again, worked, audit = self.add(), self.work(), self._run("audit")
        known = {receipt: self.emulator.knows(receipt) for receipt in self.receipts}
        self.verdict.findings += judge_queue([again, worked, audit], self.listed(), known)

    def _run(self, subcommand, *arguments, tracer=None):
        configuration = self.till.configuration(self.emulator.url, True, {"queue": {"store": self.store}})
        program = Program([self.till.program, "--config", configuration, "--json", "queue", subcommand, *arguments],
            {"LC_ALL": "C.UTF-8", "XDG_STATE_HOME": self.folder / "state"}, tracer)
        program.ends_within(LIMIT)
        ended = program.end()
        said = Said(ended, f"queue {subcommand}", _entries(ended.out))
        self.verdict.said.append(said)
        if ended.hung:
            self.verdict.findings.append(Finding("hung", f"queue {subcommand} does not end"))
        return said


@dataclass(frozen=True)
class Interruption:
    victim: str  # "add" or "work"
    change: str
    call: Call

    @property
    def row(self):
        return f"queue {self.victim}, {'killed' if self.change == KILL else self.change.removeprefix('error=')}"

    def __str__(self):
        return f"queue-{self.victim}/{self.change.removeprefix('error=').removeprefix('signal=')}/{self.call}"

    def run(self, bench):
        with Queue(bench) as queue:
            injection = Injection(queue.folder, self.call, self.change)
            if self.victim == "add":
                said = queue.add(injection)
                queue.verdict.findings += judge_handing_over(said, queue.listed(), queue.receipts)
            else:
                queue.add()
                queue.work(injection)
            queue.verdict.was_disturbed = injection.was_made()
            queue.settle()
            return queue.verdict


def positions(bench, faults=DISK_FAULTS, of=OF_FILES):
    """Every one, in the order of the calls of a clean run."""
    return [position for victim in ("add", "work")
            for position in _positions_of(victim, _calls_of(victim, bench), faults, of)]


def _positions_of(victim, calls, faults, of):
    for call in calls:
        yield Interruption(victim, KILL, call)
    for error in faults:
        for call in calls:
            if call.name in of and not call.cannot_fail:
                yield Interruption(victim, f"error={error}", call)


def _calls_of(victim, bench):
    with Queue(bench) as queue:
        counter = Counter(queue.folder)
        if victim == "work":
            queue.add()
        said = queue.add(counter) if victim == "add" else queue.work(counter)
        if said.status != 0:
            raise RuntimeError(f"queue {victim} without disturbance fails: {said.everything}")
        return counter.calls()


def _entries(out):
    entries = {}
    for text in out.splitlines():
        try:
            entry = json.loads(text)
            entries[entry.get("id", "")] = entry
        except json.JSONDecodeError:
            pass  # cut off, and so not said
    return entries
