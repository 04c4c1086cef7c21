"""The faults of the emulator, one after the other."""
import time

import faults

# Calls that each fault hits, and seconds after which one that hits nothing has had its time.
HITS = 2
PATIENCE = 0.5


class Storm:
    def __init__(self, bench, emulator):
        self.emulator = emulator
        self.faults = [case.json() for case in faults.positions(bench)
                       if case.command == "sell" and case.json().get("match") == {"next": HITS}]
        self.hit = set()
        self.turn = -1
        self.since = float("-inf")

    def step(self, herd):
        """Goes on to the next fault where the last one is spent. For one of tokens, a worker is killed, so that another
        asks for some; none that is stopped, or none would wake up late."""
        hits = sum(fault["hits"] for fault in self.emulator.ask("faults")["faults"])
        if hits:
            self.hit.add(self.turn % len(self.faults))
        if hits < HITS and time.monotonic() < self.since + PATIENCE:
            return
        self.end()
        self.turn += 1
        fault = self.faults[self.turn % len(self.faults)]
        self.emulator.ask("faults", fault)
        self.since = time.monotonic()
        if fault["endpoint"] == "token":
            herd.kill_one(herd.awake())

    def end(self):
        self.emulator.ask("faults", method="DELETE")
