"""One sale: a run that is disturbed, a second one that is not, and what is wrong."""
import tempfile
from dataclasses import dataclass, field, replace
from pathlib import Path

from judgement import judge_run, judge_sale
from till import Till


@dataclass
class Verdict:
    findings: list = field(default_factory=list)
    was_disturbed: bool = True
    said: list = field(default_factory=list)  # both runs

    def excuse(self, which):
        self.findings = [replace(each, column="deceived") if which(each) else each for each in self.findings]


class Sale:
    """Its folder is deleted at the end of the `with` block."""

    def __init__(self, bench, command, receipts=2):
        self.temporary = tempfile.TemporaryDirectory(dir=bench.folder)
        self.folder = Path(self.temporary.name)
        self.till = Till(bench.frhost, self.folder)
        self.command = command
        self.receipts = [f"{self.folder.name}-{number}" for number in range(1, receipts + 1)]
        self.verdict = Verdict()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.temporary.cleanup()

    def disturbed(self, emulator, **disturbance):
        """The first run. Its judgement may have to wait until the service is back."""
        self.first = self._run(self.receipts, emulator, hurried=True, **disturbance)

    def judged(self, emulator):
        self.known = {receipt: emulator.knows(receipt) for receipt in self.receipts}
        self.verdict.findings += judge_run(self.first, self.known)

    def again(self, emulator):
        """The second run: of the same file, with another id where frhost said so."""
        ids = {receipt: self._id_for_second(receipt) for receipt in self.receipts}
        second = self._run(list(ids.values()), emulator)
        known = {each: emulator.knows(each) for each in {*ids, *ids.values()}}
        news = {each: known[each].since(self.known[each]) if each in self.known else known[each]
            for each in ids.values()}
        self.verdict.findings += judge_run(second, news)
        for receipt, last in ids.items():
            self.verdict.findings += judge_sale(list(dict.fromkeys((receipt, last))), second, known)

    def _id_for_second(self, receipt):
        return receipt + "-again" if self.first.tells_to_use_another_id(receipt) else receipt

    def _run(self, receipts, emulator, **disturbance):
        said = self.till.run(self.command, receipts, emulator.url,
            is_working=lambda: any(_is_working(emulator, receipt) for receipt in receipts), **disturbance)
        self.verdict.said.append(said)
        return said


def _is_working(emulator, receipt):
    try:
        exchanges = emulator.knows(receipt).exchanges
    except OSError:
        return False  # it has ended
    return bool(exchanges) and '"status":"wait"' in exchanges[-1]["answer"]
