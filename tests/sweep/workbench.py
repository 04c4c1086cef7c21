"""What sweeps work with: the programs that were built, a folder, emulators, a database server."""
import contextlib
import sys
import threading
from pathlib import Path

from emulator import Emulator

# The benchmarks use the same server.
sys.path.append(str(Path(__file__).resolve().parents[2] / "bench"))
import postgres

MEMORY = Path("/dev/shm")


def has_server():
    """Whether a PostgreSQL server is installed."""
    return postgres.programs() is not None


class Bench:
    """What the positions share: the programs, a folder, and an emulator for each thread."""

    def __init__(self, build, folder):
        self.frhost = str(build / "bin" / "frhost")
        self.fremulator = str(build / "bin" / "fremulator")
        self.folder = folder
        self.mine = threading.local()
        self.emulators = []
        self.resources = contextlib.ExitStack()
        self.server = None

    def use_server(self):
        """Has queues be on a PostgreSQL server, whose disk is the memory where there is one."""
        self.server = self.resources.enter_context(postgres.server(MEMORY if MEMORY.is_dir() else None))

    def store(self, folder):
        """A new place for a queue: beside the configuration in the folder, or on the server."""
        return f"postgresql:service={self.server.service(folder.name)}" if self.server else "queue.db"

    def emulator(self):
        if not hasattr(self.mine, "emulator"):
            self.mine.emulator = Emulator(self.fremulator)
            self.emulators.append(self.mine.emulator)
        return self.mine.emulator

    def stop(self):
        for emulator in self.emulators:
            emulator.stop()
        self.resources.close()
