"""A PostgreSQL server of benchmarks and sweeps: a data folder and a socket of its own, no network."""

import contextlib
import os
import pwd
import signal
import subprocess
import tempfile
import time
from pathlib import Path

VERSIONS = Path("/usr/lib/postgresql")


def programs():
    """The folder of the newest version's programs; None where it is not installed."""
    found = sorted(VERSIONS.glob("*/bin/initdb"), key=lambda program: float(program.parts[-3]))
    return found[-1].parent if found else None


@contextlib.contextmanager
def server(where=None):
    """Runs a server with its data in this folder, or on the disk that holds temporary files; yields it."""
    with tempfile.TemporaryDirectory(dir=where) as folder:
        # The server refuses to run as root.
        user = {}
        if os.geteuid() == 0:
            nobody = pwd.getpwnam("nobody")
            os.chown(folder, nobody.pw_uid, nobody.pw_gid)
            user = {"user": nobody.pw_uid, "group": nobody.pw_gid, "extra_groups": []}
        quiet = {"cwd": folder, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **user}
        subprocess.run([programs() / "initdb", "-D", "data", "-U", "till", "-A", "trust", "-E", "UTF8", "--no-locale"],
                       check=True, **quiet)
        process = subprocess.Popen([programs() / "postgres", "-D", "data", "-k", folder, "-h", "",
                                    "-c", "max_connections=500"], **quiet)
        try:
            yield Server(folder, process)
        finally:
            # Without waiting for clients that were left.
            process.send_signal(signal.SIGINT)
            process.wait()


class Server:
    def __init__(self, folder, process):
        self.folder = folder
        self.services = Path(folder) / "services"
        os.environ["PGSERVICEFILE"] = str(self.services)
        while subprocess.run([programs() / "pg_isready", "-q", "-h", folder], check=False).returncode != 0:
            if process.poll() is not None:
                raise SystemExit("the PostgreSQL server does not start")
            time.sleep(0.05)

    def service(self, name):
        """A service with an empty schema of its own."""
        subprocess.run([programs() / "psql", "-h", self.folder, "-U", "till", "-qXc", f"CREATE SCHEMA {name}",
                        "postgres"], check=True)
        with self.services.open("a") as services:
            services.write(f"[{name}]\nhost={self.folder}\nuser=till\ndbname=postgres\n"
                           f"options=-csearch_path={name}\n")
        return name

    def analyze(self, service):
        """Does what the server does by itself after a while, now."""
        subprocess.run([programs() / "psql", "-qXc", "VACUUM ANALYZE", f"service={service}"], check=True)

    def value(self, service, query):
        """The number that a query returns."""
        return float(subprocess.run([programs() / "psql", "-qXAtc", query, f"service={service}"], check=True,
                                    capture_output=True, text=True).stdout)

    def statement_microseconds(self, service, statement, clients, seconds):
        """Runs the statement again and again from several clients; returns the time that one takes all together."""
        script = Path(self.folder) / "statement.sql"
        script.write_text(statement + ";\n")
        said = subprocess.run([programs() / "pgbench", "-n", "-c", str(clients), "-j", str(clients), "-T", str(seconds),
                               "-f", script, f"service={service}"], check=True, capture_output=True, text=True).stdout
        rate = next(line for line in said.splitlines() if line.startswith("tps = "))
        return 1e6 / float(rate.split()[2])
