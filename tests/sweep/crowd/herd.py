"""Workers of the queue that are stopped, continued and killed at random, each with a clock of its own."""
import glob
import random
import signal
import subprocess
import time
from pathlib import Path

from programs import LAST_MOMENT, START

# What a worker's configuration says: the least that it allows, and as many receipts at once.
LEASE = 5
PARALLEL = 4
# How long workers are stopped: a moment, longer than the lease, and longer than others wait for a lock of SQLite.
NAPS = [(0.05, 1.0)] * 5 + [(LEASE + 1, LEASE + 4)] * 4 + [(11, 14)]
HOUR = 3600


def clock_library():
    """That of faketime; None where it is not installed."""
    return next(iter(sorted(glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1"))), None)


class Worker:
    def __init__(self, command, environment, folder, number):
        self.command = command
        # Time-outs are those of the machine, whose clock cannot be set.
        clock = {"LD_PRELOAD": clock_library(), "FAKETIME": f"{number * HOUR:+d}s", "FAKETIME_DONT_FAKE_MONOTONIC": 1}
        self.settings = [f"{name}={value}" for name, value in (environment | clock).items()]
        self.log = (folder / f"worker-{number}.log").open("ab")
        self.start()

    def start(self):
        self.until = None  # when it is to go on
        self.process = subprocess.Popen([*START, *self.settings, *self.command], stdin=subprocess.DEVNULL,
            stdout=self.log, stderr=self.log, start_new_session=True)

    def sleep(self, seconds):
        self.process.send_signal(signal.SIGSTOP)
        self.until = time.monotonic() + seconds

    def wake(self):
        self.process.send_signal(signal.SIGCONT)
        self.until = None

    def restart(self):
        self.process.kill()
        self.process.wait()
        self.tidy()
        self.start()

    def tidy(self):
        """Removes what faketime leaves of a process that was killed."""
        for name in ("faketime_shm_", "sem.faketime_sem_"):
            Path("/dev/shm", f"{name}{self.process.pid}").unlink(missing_ok=True)

    def ended(self):
        """Whether it has ended by itself, which it should not."""
        return self.process.poll() is not None


class Herd:
    def __init__(self, workers, seed):
        self.workers = workers
        self.random = random.Random(seed)
        self.next = time.monotonic()
        self.stops = self.kills = self.deaths = 0

    def step(self):
        """Does what is due: wakes workers, and every now and then stops or kills one. Two always go on."""
        now = time.monotonic()
        for worker in self.workers:
            if worker.ended():
                self.deaths += 1
                worker.start()
            elif worker.until and worker.until <= now:
                worker.wake()
        if now < self.next or len(self.awake()) <= 2:
            return
        self.next = now + self.random.uniform(0.1, 0.8)
        if self.random.randrange(10) == 0:
            self.kill_one(self.workers)
            return
        self.random.choice(self.awake()).sleep(self.random.uniform(*self.random.choice(NAPS)))
        self.stops += 1

    def awake(self):
        return [worker for worker in self.workers if not worker.until]

    def kill_one(self, workers):
        """Kills one of these, and starts another in its place."""
        self.random.choice(workers).restart()
        self.kills += 1

    def calm(self):
        for worker in self.workers:
            if worker.until:
                worker.wake()

    def end(self):
        """Ends all, and says which did not end as they should."""
        self.calm()
        for worker in self.workers:
            worker.process.send_signal(signal.SIGTERM)
        texts = [_end(worker.process) for worker in self.workers]
        for worker in self.workers:
            worker.tidy()
        return [text for text in texts if text]


def _end(process):
    """What is wrong with the end of a worker that was told to end; empty when nothing is."""
    if (status := _status(process)) is not None:
        return f"a worker ends with status {status}" if status != 0 else ""
    # It waits for a document that the service never finishes. Told again, it waits no longer.
    process.send_signal(signal.SIGTERM)
    if _status(process) is not None:
        return ""
    process.kill()
    process.wait()
    return "a worker does not end"


def _status(process):
    try:
        return process.wait(LAST_MOMENT)
    except subprocess.TimeoutExpired:
        return None
