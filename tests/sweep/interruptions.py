"""Kills, breaks and signals at every system call of frhost and of the emulator."""
from dataclasses import dataclass

from emulator import Emulator
from judgement import Finding
from programs import DidNotStart
from sale import Sale
from tracing import ENDS, KILL, SIGNALS, Call, Counter, Injection

VICTIMS = ["sell", "send", "emulator"]


@dataclass(frozen=True)
class Interruption:
    victim: str  # a command of frhost, or "emulator"
    kind: str
    change: str
    call: Call

    @property
    def row(self):
        return f"{self.victim}, {self.kind}"

    def __str__(self):
        return f"{self.victim}/{self.change.removeprefix('error=').removeprefix('signal=')}/{self.call}"

    def run(self, bench):
        with Sale(bench, "sell" if self.victim == "emulator" else self.victim) as sale:
            injection = Injection(sale.folder, self.call, self.change)
            if self.victim == "emulator":
                _disturb_emulator(bench, sale, injection)
            else:
                sale.disturbed(bench.emulator(), tracer=injection)
                sale.judged(bench.emulator())
                sale.again(bench.emulator())
            sale.verdict.was_disturbed = injection.was_made()
            return sale.verdict


def _disturb_emulator(bench, sale, tracer):
    options = ["--db", str(sale.folder / "service.db")]
    try:
        first = Emulator(bench.fremulator, options, tracer)
        sale.disturbed(first)
        if first.stop().hung:
            sale.verdict.findings.append(Finding("hung", "the emulator does not end"))
    except DidNotStart:
        first = None
    second = Emulator(bench.fremulator, options)
    try:
        if not first:
            sale.disturbed(second)
        sale.judged(second)
        sale.again(second)
    finally:
        second.stop()


def positions(bench):
    """Every one, in the order of the calls of a clean run."""
    return [position for victim in VICTIMS for position in _positions_of(victim, _calls_of(victim, bench))]


def _positions_of(victim, calls):
    signals = ["TERM"] if victim == "emulator" else SIGNALS
    for call in calls:
        yield Interruption(victim, "killed", KILL, call)
    for call in calls:
        for error in call.errors():
            yield Interruption(victim, "broken", f"error={error}", call)
    for call in calls:
        for signal in signals if call.name not in ENDS else ():
            yield Interruption(victim, "signalled", signal, call)


def _calls_of(victim, bench):
    with Sale(bench, "sell" if victim == "emulator" else victim) as sale:
        counter = Counter(sale.folder)
        if victim == "emulator":
            emulator = Emulator(bench.fremulator, ["--db", str(sale.folder / "service.db")], counter)
            sale.disturbed(emulator)
            emulator.stop()
        else:
            sale.disturbed(bench.emulator(), tracer=counter)
        if sale.first.status != 0:
            raise RuntimeError(f"a sale without disturbance fails: {sale.first.everything}")
        return counter.calls()
