"""Running a program that may be killed, broken or stopped on purpose."""
import select
import signal
import subprocess
import threading
from dataclasses import dataclass

# Seconds: a program that has not ended by then hangs.
LIMIT = 40
LAST_MOMENT = 10
# As a shell starts it, whatever this process ignores; it does not outlive this process.
START = ["setpriv", "--pdeathsig", "TERM", "env", "--default-signal=HUP,INT,TERM,PIPE"]


class DidNotStart(Exception):
    pass


@dataclass
class Ended:
    """How a program ended, and what it wrote."""

    status: int  # negative: the signal that ended it
    out: str
    err: str
    hung: bool


class Program:
    def __init__(self, command, environment=None, tracer=None):
        self.tracer = tracer
        settings = [f"{name}={value}" for name, value in (environment or {}).items()]
        self.process = subprocess.Popen(
            [*START, *settings, *(tracer.command() if tracer else ()), *command],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, errors="replace",
            start_new_session=True)
        if tracer:
            threading.Thread(target=tracer.watch, args=[self.process], daemon=True).start()

    def line(self):
        """The next line that it writes; empty when it ends or hangs instead."""
        ready, _, _ = select.select([self.process.stdout], [], [], LIMIT)
        return self.process.stdout.readline() if ready else ""

    def signal(self, number):
        """To the program itself, not to its tracer."""
        if self.process.poll() is not None:
            return  # its number may belong to another process by now
        if self.tracer:
            self.tracer.signal(self.process.pid, number)
        else:
            self.process.send_signal(number)

    def ends_within(self, seconds):
        try:
            self.written = self.process.communicate(timeout=seconds)
            return True
        except subprocess.TimeoutExpired:
            return False

    def end(self):
        """Waits a little for the end, and brings it about where it does not come."""
        hung = not self.ends_within(LAST_MOMENT)
        if hung:
            self.signal(signal.SIGKILL)
            self.process.kill()
            self.ends_within(LIMIT)
        return Ended(self.process.returncode, *self.written, hung)
