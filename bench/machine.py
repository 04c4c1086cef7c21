"""What the figures were measured on."""

import datetime
import platform
import subprocess
import time
from pathlib import Path

from programs import say


def busy_share():
    """Of all cores in the last second, from 0 to 1."""
    def look():
        times = [int(field) for field in Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:]]
        return sum(times), times[3] + times[4]
    (all_before, idle_before), _ = look(), time.sleep(1)
    all_after, idle_after = look()
    return 1 - (idle_after - idle_before) / (all_after - all_before)


def wait_for_idleness(seconds=60):
    """Waits until the machine has been idle for three seconds; returns how busy it was in the last one."""
    quiet = 0
    for _ in range(seconds):
        busy = busy_share()
        quiet = quiet + 1 if busy < 0.05 else 0
        if quiet == 3:
            return busy
    say("the machine does not become idle; its figures are worth nothing")
    return busy


def about(command):
    busy = wait_for_idleness()
    cpu = Path("/proc/cpuinfo").read_text()
    model = next((line.split(":", 1)[1].strip() for line in cpu.splitlines() if line.startswith("model name")),
                 platform.machine())
    query = ["dpkg-query", "-W", "-f=${Package} ${Version}\n", "libqt6core6", "libcurl4", "gcc", "php-cli"]
    packages = subprocess.run(query, capture_output=True, text=True, check=False).stdout.splitlines()
    cores = cpu.count("processor\t")
    return (f"{model}, {cores} cores, Linux {platform.release()}, {busy:.0%} busy at the start\n"
            f"{', '.join(package for package in packages if not package.endswith(' '))}\n"
            f"{datetime.datetime.now():%Y-%m-%d %H:%M}, {command}\n")
