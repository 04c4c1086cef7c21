"""A till that sells with frhost, and what it is told."""
import json
import re
import signal
import time
from dataclasses import dataclass
from pathlib import Path

from emulator import GROUP, LOGIN, PASSWORD
from programs import LIMIT, Ended, Program

# Seconds after which a till asks whether the service is still working on the receipt.
PATIENCE = 8
TOTAL = 160.0


@dataclass
class Said:
    """What a run of frhost said."""

    ended: Ended
    command: str
    lines: dict  # of JSON, by id

    @property
    def status(self):
        return self.ended.status

    @property
    def everything(self):
        return self.ended.out + self.ended.err

    def tells_to_use_another_id(self, receipt):
        advice = [line for line in self.ended.err.splitlines() if line.startswith(f"{receipt}:")]
        return any(re.search(r"\bGive (the sale|it) an? (new id|id of its own)\b", line) for line in advice)


class Till:
    """Everything that it writes is in its folder."""

    def __init__(self, program, folder):
        self.program = program
        self.folder = Path(folder)

    def run(self, command, receipts, url, hurried=False, tracer=None, is_working=lambda: False):
        """Runs `sell` or `send`. `hurried` shortens the limits of the exchange. A run that only waits because the service
        `is_working` is interrupted."""
        program = Program(
            [self.program, "--config", self.configuration(url, hurried), "--json", *self._command(command, receipts)],
            {"LC_ALL": "C.UTF-8", "XDG_STATE_HOME": self.folder / "state"}, tracer)
        started = time.monotonic()
        while not program.ends_within(PATIENCE) and time.monotonic() < started + LIMIT:
            if is_working():
                program.signal(signal.SIGTERM)
        ended = program.end()
        return Said(ended, command, _lines(ended.out))

    def _command(self, command, receipts):
        pictures = ["--qr-dir", str(self.folder / "pictures")] if command == "sell" else []
        return [command, self.receipts(receipts), *pictures]

    def receipts(self, receipts):
        """Writes a file with a receipt for each id; returns its path."""
        requisites = [{"tag": 1008, "value": "buyer@example.com"}, {"tag": 1055, "value": 1}]
        position = {"name": "Молоко 3,2 %", "price": TOTAL, "quantity": 1, "sum": TOTAL, "taxCode": 1}
        receipt = {"requisites": requisites, "positions": [position], "payments": [{"type": 1, "sum": TOTAL}]}
        return self._write("receipts.jsonl", [json.dumps({"id": each} | receipt) for each in receipts])

    def configuration(self, url, hurried, more=None):
        """Writes it, with the sections `more`; returns its path."""
        register = {"url": url, "login": LOGIN, "password": PASSWORD, "groupCode": GROUP, "inn": "7700000009",
            "email": "shop@example.com", "paymentAddress": "https://shop.example.com", "requestInterval": 200}
        limits = {"connectTimeout": 1000, "firstByteTimeout": 1000, "stallTimeout": 1000, "overallTimeout": 3000}
        sections = {"register": register, "transport": limits if hurried else {}} | (more or {})
        lines = [[f"[{name}]", *(f"{key} = {value}" for key, value in section.items())]
            for name, section in sections.items()]
        return self._write("register.ini", sum(lines, []))

    def _write(self, name, lines):
        path = self.folder / name
        path.write_text("".join(line + "\n" for line in lines))
        path.chmod(0o600)
        return str(path)


def _lines(out):
    lines = {}
    for text in out.splitlines():
        try:
            line = json.loads(text)
            lines[line["id"]] = line
        except (json.JSONDecodeError, KeyError, TypeError):
            pass  # cut off, and so not said
    return lines
