"""Proves that each lie and each loss lands in its column, and that the truth lands in none."""
import unittest

from emulator import Known
from judgement import judge_handing_over, judge_queue, judge_run, judge_sale, judge_settled
from programs import Ended
from till import Said

ID = "r7"
PAYLOAD = {"fn_number": "9", "ecr_registration_number": "1", "shift_number": 2, "fiscal_document_number": 3,
    "fiscal_document_attribute": 4, "total": 160.0, "receipt_datetime": "22.11.2026 04:46:05",
    "ofd_receipt_url": "http://here/#U"}
FISCAL = {"fnNumber": "9", "registrationNumber": "1", "shiftNumber": "2", "fiscalDocumentNumber": 3, "fiscalSign": "4",
    "total": 160, "dateTime": "2026-11-22T04:46:05"}
PROOF = ["fnNumber", "fiscalDocumentNumber", "fiscalSign", "total"]
LINE = {"outcome": "registered", "uuid": "U", "qr": "Q", "receiptUrl": "http://before/#U", "fiscal": FISCAL}


def known(status=None, sent=True):
    documents = [{"uuid": "U", "status": status, "qr": "Q", "report": {"payload": PAYLOAD}}] if status else []
    return Known(documents, [{"endpoint": "sell"}] if sent else [])


def said(status, line=None, err="", command="sell", hung=False):
    lines = {ID: {"id": ID} | line} if line else {}
    return Said(Ended(status, ID if line else "", err, hung), command, lines)


def queued(status, *receipts):
    return Said(Ended(status, "", "", False), "queue add", {receipt: {} for receipt in receipts})


def outcome(word, **more):
    return {"outcome": word} | more


class Run(unittest.TestCase):
    def columns(self, run, service):
        return sorted({finding.column for finding in judge_run(run, {ID: service})})

    def test_the_truth(self):
        for run, service in [
            (said(0, LINE), known("done")),
            (said(1, LINE), known("done")),
            (said(5, outcome("incomplete")), known("done")),
            (said(3, outcome("refused")), known(sent=True)),
            (said(3, outcome("refused")), known("fail")),
            (said(4, outcome("unknown")), known("done")),
            (said(4, outcome("unknown", error={"message": "Not sent, no connection"})), known(sent=False)),
            (said(0, {"uuid": "U"}, command="send"), known("wait")),
            (said(-9), known("done")),
            (said(-15), known(sent=False)),
            (said(4, err="r7 was sent, its outcome is unknown"), known("done")),
        ]:
            self.assertEqual(self.columns(run, service), [], (run, service))

    def test_lies(self):
        for run, service in [
            (said(0, LINE), known("fail")),
            (said(0, LINE), known()),
            (said(5, outcome("incomplete")), known()),
            (said(3, outcome("refused")), known("done")),
            (said(3, outcome("refused")), known("wait")),
            (said(4, outcome("unknown", error={"message": "Not sent, no connection"})), known()),
            (said(4, outcome("unknown"), err="Interrupted. r7 was not sent; run again."), known()),
            (said(4, outcome("unknown"), err="r7? Nothing was sent."), known()),
            (said(4, outcome("unknown"), err="r7? No receipt was sent."), known()),
            (said(0, {"uuid": "other"}, command="send"), known("done")),
            (said(0, {"uuid": "U"}, command="sell"), known("done")),
            (said(0, outcome("unknown")), known("done")),
            (said(0, err="r7"), known("done")),
            (said(2, err="r7"), known("done")),
            (said(3, LINE), known("done")),
            (said(5, LINE), known("done")),
        ]:
            self.assertEqual(self.columns(run, service), ["false"], (run, service))

    def test_wrong_fiscal_data(self):
        lines = [LINE | {key: "wrong"} for key in ("uuid", "qr", "receiptUrl")]
        lines += [LINE | {"fiscal": FISCAL | {key: value}} for key in FISCAL for value in (0, "")]
        for line in lines:
            self.assertEqual(self.columns(said(0, line), known("done")), ["false"], line)
            incomplete = said(5, line | {"outcome": "incomplete"})
            self.assertEqual(self.columns(incomplete, known("done")), ["false"], line)

    def test_absent_fiscal_data(self):
        for key in FISCAL:
            line = LINE | {"fiscal": {name: value for name, value in FISCAL.items() if name != key}}
            self.assertEqual(self.columns(said(0, line), known("done")), ["false"] if key in PROOF else [], key)
            self.assertEqual(self.columns(said(5, line | {"outcome": "incomplete"}), known("done")), [], key)

    def test_silence(self):
        for status in (-1, -6, -25, 1, 4):
            self.assertEqual(self.columns(said(status, err="Interrupted."), known("done")), ["silent"])

    def test_no_end(self):
        self.assertEqual(self.columns(said(-9, hung=True), known("done")), ["hung"])


class SaleOfTwoRuns(unittest.TestCase):
    def columns(self, second, **documents):
        return [finding.column for finding in judge_sale(list(documents), second, documents)]

    def test_all_is_well(self):
        self.assertEqual(self.columns(said(0, LINE), r7=known("done")), [])
        self.assertEqual(self.columns(said(0, LINE), old=known("fail"), r7=known("done")), [])

    def test_what_is_wrong(self):
        self.assertEqual(self.columns(said(0, LINE), r7=known()), ["lost"])
        self.assertEqual(self.columns(said(3, outcome("refused")), r7=known("fail")), ["lost"])
        self.assertEqual(self.columns(said(0, LINE), old=known("done"), r7=known("done")), ["doubled"])
        self.assertEqual(self.columns(said(4, outcome("unknown")), r7=known("done")), ["unsettled"])
        self.assertEqual(self.columns(said(3, outcome("refused")), r7=known("wait")), ["lost"])
        self.assertEqual(self.columns(said(0, {"uuid": "U"}, command="send"), r7=known()), ["lost"])

    def test_a_service_that_never_finishes(self):
        self.assertEqual(self.columns(said(4, outcome("unknown")), r7=known("wait")), ["unfinished"])
        for status in ("wait", "fail"):
            self.assertEqual(self.columns(said(0, {"uuid": "U"}, command="send"), r7=known(status)), ["unfinished"])


class Queue(unittest.TestCase):
    def columns(self, findings):
        return sorted({finding.column for finding in findings})

    def test_handing_over(self):
        both = {"a": {}, "b": {}}
        for run, stored, columns in [
            (queued(0, "a", "b"), both, []),
            (queued(1), {}, []),
            (queued(-9), both, []),
            (queued(-9, "a"), both, []),
            (queued(0, "a", "b"), {}, ["false"]),
            (queued(0), {"a": {}}, ["false"]),
            (queued(-9, "a"), {}, ["false"]),
            (queued(-9), {"b": {}}, ["false"]),
        ]:
            self.assertEqual(self.columns(judge_handing_over(run, stored, ["a", "b"])), columns, (run, stored))

    def test_the_end(self):
        good = {ID: {"state": "registered", "uuid": "U"}}
        twice = Known(known("done").documents * 2, [])
        for runs, stored, service, columns in [
            ([queued(0)], good, known("done"), []),
            ([queued(0), queued(4)], good, known("done"), ["unsettled"]),
            ([queued(0)], good, known("wait"), ["lost"]),
            ([queued(0)], good, twice, ["doubled"]),
            ([queued(0)], {}, known("done"), ["false"]),
            ([queued(0)], {ID: {"state": "registered", "uuid": "V"}}, known("done"), ["false"]),
            ([queued(0)], {ID: {"state": "unknown", "uuid": "U"}}, known("done"), ["false"]),
        ]:
            self.assertEqual(self.columns(judge_queue(runs, stored, {ID: service})), columns, (stored, service))

    def test_a_sale_that_is_settled(self):
        def entry(state, uuid=""):
            return {"state": state, "uuid": uuid}

        def there(status, uuid="U"):
            return {"status": status, "uuid": uuid}

        for stored, documents, columns in [
            ({"a": entry("registered", "U")}, {"a": [there("done")]}, []),
            ({"a": entry("failed", "U"), "b": entry("registered", "V")},
             {"a": [there("fail")], "b": [there("done", "V")]}, []),
            ({"a": entry("registered", "U")}, {}, ["false", "lost"]),
            ({"a": entry("unknown")}, {"a": [there("wait")]}, ["unfinished"]),
            ({"a": entry("unknown")}, {"a": [there("done")]}, ["false"]),
            ({"a": entry("registered", "V")}, {"a": [there("done")]}, ["false"]),
            ({}, {"a": [there("done")]}, ["false"]),
            ({"a": entry("refused")}, {}, ["lost"]),
            ({"a": entry("failed"), "b": entry("registered", "V")},
             {"a": [there("done")], "b": [there("done", "V")]}, ["doubled"]),
        ]:
            self.assertEqual(self.columns(judge_settled(["a", "b"], stored, documents)), columns, (stored, documents))


if __name__ == "__main__":
    unittest.main()
