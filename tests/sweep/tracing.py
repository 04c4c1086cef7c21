"""System calls of a program: counting them, and changing one of them. Uses strace."""
import contextlib
import os
import re
import signal
import shutil
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

# How a call may fail, by name. A name with a signal: the kernel sends that too.
ERRORS = {
    "accept4": ["EMFILE"],
    "access": ["EACCES"],
    "bind": ["EADDRINUSE"],
    "brk": ["ENOMEM"],
    "clock_nanosleep": ["EINTR"],
    "clone3": ["EAGAIN"],
    "connect": ["ECONNREFUSED"],
    "epoll_create1": ["EMFILE"],
    "epoll_ctl": ["ENOMEM"],
    "epoll_wait": ["EINTR"],
    "eventfd2": ["EMFILE"],
    "fcntl": ["EAGAIN"],
    "ftruncate": ["EIO", "EFBIG:signal=XFSZ"],
    "getcwd": ["ENOENT"],
    "getpeername": ["ENOTCONN"],
    "getrandom": ["EINTR"],
    "getsockname": ["ENOBUFS"],
    "getsockopt": ["ENOBUFS"],
    "ioctl": ["ENOTTY"],
    "listen": ["EADDRINUSE"],
    "lseek": ["ESPIPE"],
    "madvise": ["ENOMEM"],
    "mkdir": ["ENOSPC"],
    "mmap": ["ENOMEM"],
    "mprotect": ["ENOMEM"],
    "munmap": ["ENOMEM"],
    "newfstatat": ["EACCES"],
    "openat": ["EACCES", "EMFILE"],
    "poll": ["EINTR", "ENOMEM"],
    "ppoll": ["EINTR"],
    "pwrite64": ["ENOSPC", "EIO", "EFBIG:signal=XFSZ"],
    "readlink": ["EACCES"],
    "recvfrom": ["ECONNRESET", "EAGAIN"],
    "recvmsg": ["ECONNRESET"],
    "rename": ["ENOSPC"],
    "sendmsg": ["ECONNRESET"],
    "sendto": ["ECONNRESET", "EPIPE"],
    "setsockopt": ["ENOBUFS"],
    "socket": ["EMFILE"],
    "socketpair": ["EMFILE"],
    "write": ["ENOSPC", "EIO", "EPIPE:signal=PIPE", "EFBIG:signal=XFSZ"],
    "writev": ["ENOSPC"],
}
# How a call fails that returns no error: the kernel answers with the old end of the data, and the C library would take
# the number of an error for a new end far away, and write there.
FAILURES = {"brk": "retval=0"}
# Calls after which their thread does nothing more.
ENDS = {"exit", "exit_group"}
# Calls that cannot fail for a reason outside the program; some others only with these arguments: a pipe to itself, and
# the release of a lock.
CANNOT_FAIL = ENDS | set(
    "arch_prctl futex getegid geteuid getgid getpid gettid getuid prctl prlimit64 rseq"
    " rt_sigaction rt_sigprocmask rt_sigreturn rt_sigtimedwait sched_getaffinity sched_yield set_robust_list"
    " set_tid_address sysinfo tgkill umask uname".split())
HARMLESS_ARGUMENTS = re.compile(r"^([3-9]|\d\d+)<(pipe|anon_inode):|\bF_UNLCK\b")

KILL = "signal=KILL"
SIGNALS = ["TERM", "INT", "HUP"]
STOPPED = "stopped by SIGSTOP"


@dataclass(frozen=True)
class Call:
    """A call of a clean run: the how-manieth of its name in its thread."""

    name: str
    number: int
    in_another_thread: bool = False
    cannot_fail: bool = False  # for a reason outside the program

    def errors(self):
        return [] if self.cannot_fail else ERRORS.get(self.name, ["EIO"])

    def __str__(self):
        return f"{self.name}:{self.number}" + ("+threads" if self.in_another_thread else "")


def is_permitted():
    return bool(shutil.which("strace")) and subprocess.run(["strace", "-qq", "-o", "/dev/null", "true"], stderr=subprocess.DEVNULL).returncode == 0


class Tracer:
    """strace around a program, writing to a file in the folder."""

    def __init__(self, folder, *options):
        self.file = Path(folder) / "trace"
        self.options = options

    def command(self):
        return ["strace", *self.options, "-o", str(self.file)]

    def text(self):
        return self.file.read_text(errors="replace") if self.file.exists() else ""

    def signal(self, tracer, number):
        """To the program that the process `tracer` traces."""
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):  # it has ended
            for child in Path(f"/proc/{tracer}/task/{tracer}/children").read_text().split():
                os.kill(int(child), number)

    def watch(self, process):
        """Called in a thread of its own as soon as the program runs."""


class Counter(Tracer):
    """Lists the calls of a program that runs undisturbed."""

    def __init__(self, folder):
        super().__init__(folder, "-f", "-y")

    def calls(self):
        """Those of the main thread in order, then those of the others; without the execve that starts it."""
        counts = {}
        calls = []
        for thread, name, arguments in re.findall(r"^(\d+) +(\w+)\((.*)", self.text(), re.M):
            counts[thread, name] = counts.get((thread, name), 0) + 1
            is_other_thread = thread != next(iter(counts))[0]
            cannot_fail = name in CANNOT_FAIL or bool(HARMLESS_ARGUMENTS.search(arguments))
            calls.append(Call(name, counts[thread, name], is_other_thread, cannot_fail))
        return sorted(dict.fromkeys(calls[1:]), key=lambda call: call.in_another_thread)


class Injection(Tracer):
    """Changes one call, or sends a signal once it has been made.

    strace counts the calls of each thread apart. Without -f it sees the main thread alone; with it, the change hits the
    first thread that makes so many calls of the name. A signal from strace would go to that thread; a real one goes to
    the process. So strace only stops the program, and the signal is sent meanwhile.
    """

    def __init__(self, folder, call, change):
        follow = ["-f"] if call.in_another_thread else []
        self.to_send = signal.Signals[f"SIG{change}"] if change in SIGNALS else None
        tampering = FAILURES.get(call.name, change) if change.startswith("error=") else change
        tampering = "signal=STOP" if self.to_send else tampering
        super().__init__(folder, *follow, "-e", f"trace={call.name}",
            "-e", f"inject={call.name}:{tampering}:when={call.number}")

    def was_made(self):
        return any(sign in self.text() for sign in ("(INJECTED)", "killed by SIGKILL", STOPPED))

    def watch(self, process):
        stops = 0
        while self.to_send and process.poll() is None:
            if (seen := self.text().count(STOPPED)) > stops:
                if stops == 0:
                    self.signal(process.pid, self.to_send)
                self.signal(process.pid, signal.SIGCONT)  # with -f each thread may stop the program once
                stops = seen
            time.sleep(0.005)
