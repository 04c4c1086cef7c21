"""The emulator of the service: a process of its own, and what it knows."""
import json
import signal
import urllib.parse
import urllib.request
from dataclasses import dataclass

from programs import LIMIT, DidNotStart, Program

LOGIN, PASSWORD, GROUP = "shop", "secret", "shop_1"


@dataclass
class Known:
    """What the service knows of one id."""

    documents: list  # as the API shows one
    exchanges: list  # the calls about it, in order

    def with_status(self, *words):
        return [document for document in self.documents if document["status"] in words]

    @property
    def was_sent(self):
        return any(exchange["endpoint"] == "sell" for exchange in self.exchanges)

    def since(self, earlier):
        """The same documents, but only the calls that came later."""
        return Known(self.documents, self.exchanges[len(earlier.exchanges) :])


class Emulator:
    """Listens once it has been made; otherwise throws DidNotStart."""

    def __init__(self, program, options=(), tracer=None):
        login = ["--login", LOGIN, "--password", PASSWORD, "--group", GROUP]
        self.program = Program([program, *login, *options], tracer=tracer)
        line = self.program.line()
        if not line.startswith("listening on "):
            raise DidNotStart(line + self.stop().err)
        self.url = line.split()[-1]

    def stop(self):
        self.program.signal(signal.SIGTERM)
        return self.program.end()

    def ask(self, path, body=None, method=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(urllib.parse.urljoin(self.url, "/_emulator/" + path), data, method=method)
        with urllib.request.urlopen(request, timeout=LIMIT) as answer:
            return json.load(answer)

    def knows(self, receipt):
        query = urllib.parse.urlencode({"external_id": receipt})
        found = self.ask(f"documents?{query}")["documents"]
        return Known([self.ask(f"documents/{each['uuid']}") for each in found], self._exchanges(query))

    def _exchanges(self, query):
        exchanges = []
        page = f"exchanges?group={GROUP}&{query}"
        while more := self.ask(page)["exchanges"]:
            exchanges += more
            page = f"exchanges?group={GROUP}&{query}&after={more[-1]['sequence']}"
        return exchanges
