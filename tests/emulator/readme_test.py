"""Runs the commands of emulator/README.md, only on another port: readme_test.py PROGRAM README."""
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

program, readme = sys.argv[1], Path(sys.argv[2]).read_text()
shell = re.findall(r"```sh\n(.*?)```", readme, re.S)
files = [text for text in re.findall(r"```json\n(.*?)```", readme, re.S)]

# Prints a line for every call of curl: status, exit code and URL. Events would otherwise never end.
wrapper = """
curl() {
    local limit=
    [[ $* == */events ]] && limit='--max-time 3'
    command curl -sS $limit -w '%{stderr}%{http_code} %{exitcode} %{method} %{url_effective}\\n' "$@"
}
"""

expected = """
200 0 POST possystem/v4/getToken
200 0 POST possystem/v4/shop_1/sell
200 0 POST _emulator/faults
000 52 POST possystem/v4/shop_1/sell
400 0 POST possystem/v4/shop_1/sell
200 0 GET _emulator/expect?external_id=till-2&total=150.50&wire_requests=2
200 0 GET _emulator/documents?limit=1
200 0 GET _emulator/documents?external_id=till-*&limit=10
200 0 GET _emulator/documents/UUID
200 0 GET _emulator/documents/UUID/exchange?limit=10
200 0 GET _emulator/documents/UUID/qr.svg
200 0 GET _emulator/receipts?status=refused
200 0 GET _emulator/service
200 0 GET _emulator/rules
200 0 GET _emulator/exchanges?group=shop_1&external_id=till-1
200 0 GET _emulator/exchanges?limit=10
200 0 GET _emulator/recording
200 0 GET _emulator/effects
200 0 POST _emulator/faults
200 0 GET _emulator/faults
200 0 DELETE _emulator/faults/1
200 0 DELETE _emulator/faults
200 0 GET _emulator/expect?external_id=till-1&total=150.50&wire_requests=1&status=done
200 0 DELETE _emulator/documents
200 28 GET _emulator/events
""".strip()


def start(arguments):
    process = subprocess.Popen([program, *arguments], stdout=subprocess.PIPE, text=True)
    line = process.stdout.readline()
    port = re.match(r"listening on http://127\.0\.0\.1:(\d+)/possystem/v4/$", line)
    assert port, f"{arguments}: {line!r}"
    return process, port.group(1)


def stop(process):
    process.terminate()
    assert process.wait(20) == 0


def test_commands():
    first, rest = shell[0], shell[1:]
    command = re.search(r"^fremulator (.*)$", first, re.M).group(1).split()
    command[command.index("--port") + 1] = "0"
    process, port = start(command)
    script = wrapper + "\n".join(rest).replace("127.0.0.1:8080", f"127.0.0.1:{port}")
    ran = subprocess.run(["bash", "-c", script], capture_output=True, text=True, timeout=60)
    stop(process)
    calls = [line for line in ran.stderr.splitlines() if not line.startswith("curl: ")]
    seen = "\n".join(calls).replace(f"http://127.0.0.1:{port}/", "")
    seen = re.sub(r"[0-9a-f]{8}-[0-9a-f-]{27}", "UUID", seen)
    assert seen == expected, f"not as the README says:\n{seen}\n{ran.stdout}"
    assert '"code":33' in ran.stdout and '"pass":true' in ran.stdout, ran.stdout


def test_files():
    options = []
    for text in files:
        content = json.loads(text)
        option = "--faults" if isinstance(content, list) else "--replay" if "request" in content else "--config"
        options.append(option)
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            file.write(text)
            file.flush()
            process, _ = start([option, file.name])
            stop(process)
    assert sorted(options) == ["--config", "--faults", "--replay"], options


test_commands()
test_files()
