"""Sells with frhost against the emulator, and again against what the emulator recorded: frhost_test.py FREMULATOR FRHOST."""
import json
import re
import subprocess
import sys
import tempfile
import urllib.request
from pathlib import Path

fremulator, frhost = sys.argv[1:3]
password = "password-that-must-not-be-recorded"
receipt = {"id": "till-1", "requisites": [{"tag": 1008, "value": "buyer@example.com"}],
           "positions": [{"name": "Bread", "price": 30, "quantity": 1, "sum": 30}], "payments": [{"type": 1, "sum": 30}]}


def start(*arguments):
    process = subprocess.Popen([fremulator, *arguments], stdout=subprocess.PIPE, text=True)
    line = process.stdout.readline()
    match = re.match(r"listening on (http://127\.0\.0\.1:\d+/)possystem/v4/$", line)
    assert match, f"{arguments}: {line!r}"
    return process, match.group(1)


def stop(process):
    process.terminate()
    assert process.wait(20) == 0


def sell(folder, root, journal):
    register = folder / "register.ini"
    register.write_text(f"""[register]
url={root}possystem/v4/
login=shop
password={password}
groupCode=shop_1
requestInterval=200
email=shop@example.com
inn=7700000000
paymentAddress=https://shop.example
""")
    register.chmod(0o600)
    (folder / "receipt.json").write_text(json.dumps(receipt))
    return subprocess.run([frhost, "--config", register, "--json", "sell", folder / "receipt.json", "--journal",
                           folder / journal], capture_output=True, text=True, timeout=60)


def receipt_in(sale):
    """The line of the only receipt; the summary follows it."""
    line, summary = sale.stdout.splitlines()
    assert json.loads(summary)["summary"]["receipts"] == 1, summary
    return json.loads(line)


def main(folder):
    process, root = start("--login", "shop", "--password", password, "--group", "shop_1")
    sold = sell(folder, root, "first.db")
    recording = urllib.request.urlopen(root + "_emulator/recording").read()
    stop(process)
    assert sold.returncode == 0, sold
    first = receipt_in(sold)
    assert first["outcome"] == "registered", first
    assert password.encode() not in recording
    (folder / "recording.jsonl").write_bytes(recording)

    process, root = start("--replay", folder / "recording.jsonl")
    again = sell(folder, root, "second.db")
    third = sell(folder, root, "third.db")
    stop(process)
    assert again.returncode == 0, again
    second = receipt_in(again)
    # Both addresses of the slip are of the recorded emulator.
    assert first == second, (first, second)
    assert third.returncode != 0, third
    assert "getToken" in third.stdout + third.stderr, third


with tempfile.TemporaryDirectory() as name:
    main(Path(name))
