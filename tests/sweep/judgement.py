"""Compares what frhost said with what the service knows."""
from dataclasses import dataclass

# What must never happen; each is a column of the table.
WRONGS = {
    "lost": "a sale is not registered after the second run",
    "doubled": "a sale is registered twice after the user did what frhost said",
    "false": "what frhost said is not so",
    "silent": "frhost sent a receipt and ended without mentioning it",
    "unsettled": "the second run, undisturbed, does not settle the sale",
    "hung": "a program does not end",
    "failed": "the position could not be tried, or a program that must start did not",
}
# What a client cannot change; counted, and not a failure.
NOTES = {
    "deceived": "false, but every answer about the receipt that a client could get was a lie",
    "unfinished": "the service has the document and does not register it, and frhost does not say that it does",
}

# Keys of frhost's fiscal data and of the service's payload that say the same: those that prove a registration, and those
# that may be absent.
PROOF = {
    "fnNumber": "fn_number",
    "fiscalDocumentNumber": "fiscal_document_number",
    "fiscalSign": "fiscal_document_attribute",
    "total": "total",
}
FURTHER = {
    "registrationNumber": "ecr_registration_number",
    "shiftNumber": "shift_number",
}


@dataclass(frozen=True)
class Finding:
    column: str
    text: str
    is_of_outcome: bool = False  # whether something untrue was said of a receipt's outcome


def judge_run(said, known):
    """What is wrong with one run. `known`: by id, with the calls of this run only."""
    findings = []
    for receipt, service in known.items():
        findings += [Finding("false", text, True) for text in _untrue_outcome(said, receipt, service)]
        findings += [Finding("false", text) for text in _untrue_fiscal_data(said.lines.get(receipt, {}), service)]
    findings += [Finding("false", text) for text in _untrue_of_run(said, known)]
    if said.ended.hung:
        findings.append(Finding("hung", f"frhost {said.command} does not end"))
    elif said.status != -9:
        findings += [Finding("silent", f"{receipt} was sent, status {said.status}")
            for receipt, service in known.items() if service.was_sent and receipt not in said.everything]
    return findings


def _untrue_outcome(said, receipt, service):
    done = service.with_status("done")
    line = said.lines.get(receipt, {})
    outcome = line.get("outcome")
    said_not_sent = line.get("error", {}).get("message", "").startswith("Not sent") or any(
        text in said.ended.err for text in (f"{receipt} was not sent", "Nothing was sent", "No receipt was sent"))
    if said_not_sent and service.was_sent:
        yield f"said that {receipt} was not sent, but it was"
    if outcome in ("registered", "incomplete") and not done:
        yield f"said {outcome}, but {receipt} is not registered"
    if outcome == "refused" and service.with_status("done", "wait"):
        yield f"said refused, but the service has {receipt}"
    accepted = line and outcome is None
    if accepted and line.get("uuid") not in [document["uuid"] for document in service.documents]:
        yield f"said accepted as {line.get('uuid')}, but {receipt} is not"


def _untrue_fiscal_data(line, service):
    done = service.with_status("done")
    if line.get("outcome") not in ("registered", "incomplete") or not done:
        return
    fiscal, document = line.get("fiscal", {}), done[0]
    payload = document["report"]["payload"]
    pairs = {key: (fiscal.get(key), payload[other]) for key, other in (PROOF | FURTHER).items()}
    pairs |= {"uuid": (line.get("uuid"), document["uuid"]), "qr": (line.get("qr"), document["qr"])}
    pairs["dateTime"] = (fiscal.get("dateTime"), _iso(payload["receipt_datetime"]))
    pairs["receiptUrl"] = tuple(map(_fragment, (line.get("receiptUrl"), payload["ofd_receipt_url"])))
    for key, (told, known) in pairs.items():
        may_be_absent = line["outcome"] == "incomplete" or key not in PROOF | {"uuid": ""}
        is_same = told == known or (not isinstance(known, float) and str(told) == str(known))
        if not is_same and not (told is None and may_be_absent):
            yield f"said {key} {told}, but the service has {known}"


def _iso(time):
    return f"{time[6:10]}-{time[3:5]}-{time[0:2]}T{time[11:]}"


def _fragment(url):
    """Of the receipt's address; what comes before it is the emulator's and changes with a restart."""
    return url and url.partition("#")[2]


def _untrue_of_run(said, known):
    outcomes = [said.lines.get(receipt, {"outcome": "none"}).get("outcome", "accepted") for receipt in known]
    good = "registered" if said.command == "sell" else "accepted"
    if said.status == 0 and any(outcome != good for outcome in outcomes):
        yield f"status 0 with {', '.join(outcomes)}"
    if said.status == 2 and any(service.was_sent for service in known.values()):
        yield "status 2, which means that nothing was sent"
    if said.status == 3 and "refused" not in outcomes:
        yield "status 3 without a refused receipt"
    if said.status == 5 and "incomplete" not in outcomes:
        yield "status 5 without incomplete evidence"


def judge_sale(sale, second, known):
    """What is wrong after the second run. `sale`: the ids that one sale had; `known`: by id."""
    done = [document for receipt in sale for document in known[receipt].with_status("done")]
    last = sale[-1]
    if len(done) > 1:
        return [Finding("doubled", f"registered {len(done)} times, as {' and '.join(sale)}")]
    outcome = second.lines.get(last, {}).get("outcome", "accepted")
    is_open = second.command == "send" or outcome == "unknown" and known[last].with_status("wait")
    if not done and known[last].documents and is_open:
        return [Finding("unfinished", f"{last}: {outcome}, not registered at the service")]
    if not done:
        return [Finding("lost", f"{last} is not registered after the second run, status {second.status}")]
    if second.status != 0:
        return [Finding("unsettled", f"{last}: status {second.status} from the second run")]
    return []


def judge_handing_over(said, stored, receipts):
    """What is wrong with handing receipts over. `stored`: the entries of the store, by id."""
    there = [receipt for receipt in receipts if receipt in stored]
    if said.status == 0 and there != receipts:
        yield Finding("false", f"status 0, which means that all are durable; the store has {there}")
    for receipt in said.lines:
        if receipt and receipt not in stored:
            yield Finding("false", f"said that {receipt} is queued, but it is not")
    if there and there != receipts:
        yield Finding("false", f"the store has {there} alone, and not all or none")


def judge_queue(runs, stored, known):
    """What is wrong at the end: after handing over again, work and an audit, all undisturbed."""
    for said in runs:
        if said.status != 0:
            yield Finding("unsettled", f"status {said.status} from {said.command}")
    for receipt, service in known.items():
        done = service.with_status("done")
        if not done:
            yield Finding("lost", f"{receipt} is not registered")
        if len(done) > 1:
            yield Finding("doubled", f"{receipt} is registered {len(done)} times")
        entry = stored.get(receipt, {"state": "nothing"})
        told = (entry["state"], entry.get("uuid"))
        if done and told != ("registered", done[0]["uuid"]):
            yield Finding("false", f"the store says {told} of {receipt}, the service {done[0]['uuid']}")


def judge_settled(sale, stored, documents):
    """What is wrong with one sale when nothing more is to be done. `sale`: the ids that it had; `stored`: the entries of
    the store, by id; `documents`: those of the service, by id."""
    ours = [document for receipt in sale for document in documents.get(receipt, [])]
    done = {document["uuid"] for document in ours if document["status"] == "done"}
    entries = [stored.get(receipt, {"state": "nothing"}) for receipt in sale]
    text = " and ".join(f"{receipt} ({entry['state']})" for receipt, entry in zip(sale, entries))
    told = {entry.get("uuid") for entry in entries if entry["state"] == "registered"}
    if not done:
        yield Finding("unfinished" if any(each["status"] == "wait" for each in ours) else "lost", text)
    if len(done) > 1:
        yield Finding("doubled", text)
    if not told <= done or bool(told) != bool(done):
        yield Finding("false", f"{text}: the service has {' and '.join(sorted(done)) or 'nothing'}")
