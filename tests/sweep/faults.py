"""Every fault of the emulator: effect, parameter, call, phase and count."""
import itertools
import json
import urllib.error
from dataclasses import dataclass

from sale import Sale

PHASES = ["before", "after"]
ALWAYS = 0
COUNTS = [1, 2, ALWAYS]
# Calls, and the commands of frhost that make them.
COMMANDS = {"token": ["sell", "send"], "sell": ["sell", "send"], "report": ["sell"]}

# Values of the parameters that the emulator does not list itself. The codes: those of the protocol, and one that only
# the register at the service could give.
VALUES = {
    "code": [0, 1, 2, 10, 11, 12, 13, 14, 20, 21, 30, 31, 32, 33, 34, 40, 41, 50, 502],
    "status": [200, 502],
    "bytes": [-16, 16],
    "milliseconds": [1, 2000],
}


@dataclass(frozen=True)
class FaultCase:
    command: str
    fault: str  # its JSON

    @property
    def row(self):
        return f"{self.command}, faults of {self.endpoint}"

    def __str__(self):
        values = self.json() | {"match": f"next={self.json().get('match', {}).get('next', 'always')}"}
        return "/".join([self.command, "fault", *map(str, values.values())])

    def json(self):
        return json.loads(self.fault)

    @property
    def endpoint(self):
        return self.json()["endpoint"]

    @property
    def is_always(self):
        return "match" not in self.json()

    def run(self, bench):
        emulator = bench.emulator()
        with Sale(bench, self.command, receipts=1) as sale:
            emulator.ask("faults", self.json())
            sale.disturbed(emulator)
            sale.verdict.was_disturbed = emulator.ask("faults")["faults"][0]["hits"] > 0
            emulator.ask("faults", method="DELETE")
            sale.judged(emulator)
            deceives = self._spoils_all(sale)
            if deceives:
                sale.verdict.excuse(lambda finding: finding.is_of_outcome)
            sale.again(emulator)
            if deceives:  # the user too, who does what frhost said
                sale.verdict.excuse(lambda finding: finding.column == "doubled")
            return sale.verdict

    def _spoils_all(self, sale):
        """Whether the fault spoils every answer about the receipt that a client can get, so that none can know better:
        it was given no honest one, and further questions would be answered in the same way."""
        (receipt, known), = sale.known.items()
        honest = [exchange for exchange in known.exchanges if not exchange["fault"]]
        if any(exchange["endpoint"] == "report" for exchange in honest):
            return False
        if self.command == "send" and "outcome" not in sale.first.lines.get(receipt, {}):
            return not honest  # `send` is told not to question an acceptance
        knew_whom_to_ask_about = any(
            document["uuid"] in exchange["answer"] for document in known.documents for exchange in known.exchanges)
        could_ask_honestly = self.endpoint != "report" and knew_whom_to_ask_about
        return self.is_always and self.endpoint != "token" and not could_ask_honestly


def positions(bench):
    """Every one that the emulator accepts, on every call that a command of frhost makes."""
    emulator = bench.emulator()
    keys = _keys_of_answers(bench)
    cases = []
    for effect in emulator.ask("effects")["effects"]:
        for endpoint in effect["endpoints"]:
            accepted = [fault for fault in _faults(effect, endpoint, keys[endpoint]) if _accepts(emulator, fault)]
            if not accepted:
                raise RuntimeError(f"the emulator accepts no fault {effect['effect']} of {endpoint}")
            cases += [FaultCase(command, fault) for fault in accepted for command in COMMANDS[endpoint]]
    return sorted(cases, key=lambda case: case.command)


def _faults(effect, endpoint, keys):
    for phase, parameters, count in itertools.product(PHASES, _parameters(effect, keys), COUNTS):
        match = {"match": {"next": count}} if count != ALWAYS else {}
        yield json.dumps({"endpoint": endpoint, "effect": effect["effect"], "phase": phase} | parameters | match)


def _parameters(effect, keys):
    name = effect["parameter"]
    if name == "type":
        return [{"type": each["type"]} for each in effect["types"]]
    values = keys if name == "key" else VALUES.get(name)
    return [{name: value} for value in values] if name else [{}]


def _accepts(emulator, fault):
    try:
        emulator.ask("faults", json.loads(fault))
        emulator.ask("faults", method="DELETE")
        return True
    except urllib.error.HTTPError:
        return False


def _keys_of_answers(bench):
    """By call, those of an undisturbed sale."""
    emulator = bench.emulator()
    with Sale(bench, "sell", receipts=1) as sale:
        sale.disturbed(emulator)
    newest = emulator.ask("exchanges?limit=10")["exchanges"]
    return {each["endpoint"]: list(_keys(json.loads(each["answer"][each["answer"].index("{") :]))) for each in newest}


def _keys(answer, path=""):
    for key, value in answer.items():
        yield path + key
        if isinstance(value, dict):
            yield from _keys(value, path + key + ".")
