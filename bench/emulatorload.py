"""fremulator under load: many kept connections, each selling again as soon as it is answered."""

import contextlib
import itertools
import json
import os
import re
import selectors
import socket
import statistics
import subprocess
import sys
import threading
import time
from pathlib import Path

# No id is ever sent twice: the emulator refuses one that it still knows.
IDS = itertools.count()
LINE = {"name": "Молоко 3,2 %, пастеризованное", "price": 75.25, "quantity": 2, "sum": 150.5,
        "payment_method": "full_payment", "payment_object": "commodity", "vat": {"type": "vat10"}}
SALE = {"timestamp": "01.03.2026 10:00:00", "external_id": "ID", "receipt": {
    "client": {"email": "buyer@example.com"},
    "company": {"email": "shop@example.com", "sno": "osn", "inn": "7700000000",
                "payment_address": "https://shop.example"},
    "items": [LINE] * 3, "payments": [{"type": 1, "sum": 451.5}], "total": 451.5}}


def post(path, body, headers=b""):
    return (b"POST /possystem/v4/%b HTTP/1.1\r\nHost: 127.0.0.1\r\n%bContent-Type: application/json; charset=utf-8\r\n"
            b"Content-Length: %d\r\n\r\n%b" % (path, headers, len(body), body))


class Connection:
    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port))
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.answer = b""

    def send(self, request):
        self.answer, self.sent = b"", time.perf_counter()
        self.socket.sendall(request)

    def body(self):
        """Receives a part of the answer; returns its body once it is whole, None before. Only HTTP 200 is accepted."""
        part = self.socket.recv(4096)
        self.answer += part
        head, _, body = self.answer.partition(b"\r\n\r\n")
        if not part or not head.startswith(b"HTTP/1.1 200"):
            sys.exit(f"the emulator answered {self.answer}")
        return body if len(body) == int(re.search(rb"Content-Length: (\d+)", head)[1]) else None


def token(port):
    connection = Connection(port)
    connection.send(post(b"getToken", b'{"login":"test","pass":"test"}'))
    while not (body := connection.body()):
        pass
    return json.loads(body)["token"].encode()


def load(port, connections, sells):
    """Returns the seconds that all sells took and the milliseconds of each."""
    header = b"Token: " + token(port) + b"\r\n"
    before, after = json.dumps(SALE, ensure_ascii=False).encode().split(b"ID")
    requests = (post(b"test/sell", before + b"load-%d" % next(IDS) + after, header) for _ in range(sells))
    latencies = []
    with selectors.DefaultSelector() as poll, contextlib.ExitStack() as stack:
        for _ in range(connections):
            connection = Connection(port)
            poll.register(stack.enter_context(connection.socket), selectors.EVENT_READ, connection)
        start = time.perf_counter()
        for key in poll.get_map().values():
            key.data.send(next(requests))
        while len(latencies) < sells:
            ready = poll.select(10)
            if not ready:
                sys.exit("the emulator has not answered for ten seconds")
            for key, _ in ready:
                if (body := key.data.body()) is None:
                    continue
                if b'"uuid"' not in body:
                    sys.exit(f"not a registered receipt: {body}")
                latencies.append((time.perf_counter() - key.data.sent) * 1e3)
                if (request := next(requests, None)) is not None:
                    key.data.send(request)
        return time.perf_counter() - start, latencies


@contextlib.contextmanager
def running(program, *options):
    """A fresh emulator: its process and its port."""
    with subprocess.Popen([program, *options], stdout=subprocess.PIPE, text=True) as process:
        try:
            line = next(line for line in process.stdout if line.startswith("listening on "))
            threading.Thread(target=process.stdout.read, daemon=True).start()
            yield process, int(re.search(r":(\d+)/", line)[1])
        finally:
            process.terminate()


def figures(program, connections, sells, *options):
    """Sells a second, median and 99th percentile of the latency in ms, and the emulator's CPU microseconds a sell."""
    with running(program, *options) as (process, port):
        seconds, latencies = load(port, connections, sells)
        times = Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()[11:13]
    processor = sum(map(int, times)) / os.sysconf("SC_CLK_TCK")
    return (sells / seconds, statistics.median(latencies), statistics.quantiles(latencies, n=100)[98],
            processor / sells * 1e6)


def memory(program, keep, warm_up, sells):
    """Resident kB with `keep` documents kept, after the warm-up and after more sells."""
    with running(program, "--keep", str(keep)) as (process, port):
        def resident():
            return int(re.search(r"VmRSS:\s+(\d+)", Path(f"/proc/{process.pid}/status").read_text())[1])
        load(port, 64, warm_up)
        warm = resident()
        load(port, 64, sells)
        return warm, resident()
