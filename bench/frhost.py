"""frhost as a process: how long it takes to start and how its memory grows with a file of receipts."""

import json
import re
import sys
from pathlib import Path

from programs import output_of

CONFIGURATION = """[register]
url=http://127.0.0.1/v4/
login=bench
password=bench
groupCode=shop_group
email=shop@example.com
inn=7700000000
paymentAddress=https://shop.example.com
"""


def receipt(number, lines):
    positions = [{"name": f"Молоко «Луговое» 3,2 %, бутылка № {i + 1}", "price": 15 + i, "quantity": 1, "sum": 15 + i,
                  "taxCode": i % 6} for i in range(lines)]
    return {"id": number, "requisites": [{"tag": 1008, "value": "buyer@example.com"}, {"tag": 1055, "value": 1}],
            "positions": positions, "payments": [{"type": 1, "sum": sum(line["sum"] for line in positions)}]}


class Frhost:
    """Its command lines; writes the files that they need into the folder."""

    def __init__(self, program, folder):
        self.folder = Path(folder)
        config = self.folder / "register.ini"
        config.write_text(CONFIGURATION)
        config.chmod(0o600)
        self.command = [program, "--config", config]

    def describe(self):
        return [*self.command, "describe"]

    def compose(self, receipts):
        file = self.folder / f"{len(receipts)}.jsonl"
        file.write_text("".join(json.dumps(each, ensure_ascii=False) + "\n" for each in receipts))
        return [*self.command, "compose", file]

    def compose_many(self, count):
        return self.compose([receipt(f"till-7-{i:06}", 3) for i in range(count)])

    def require_golden(self, golden):
        text = output_of(*self.compose([receipt("till-7-000123", 1)])).strip()
        stamp = '"timestamp":"05.03.2024 14:07:09"'
        if re.sub(r'"timestamp":"[^"]*"', stamp, text) != golden.read_text():
            sys.exit("frhost compose: not the golden text")
