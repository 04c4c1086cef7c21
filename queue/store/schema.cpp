#include "queue/store/schema.h"

namespace queue {

namespace {

// "frhq".
constexpr int applicationId = 0x66726871;

// In a file, a list of more than two values is made a table for each statement that compares with it.
constexpr till::DialectWord waits = {"@waits", "(state IN ('queued', 'unknown') OR state = 'incomplete')"};

// A finished receipt without its evidence cannot be written, whatever the program does. Times are
// milliseconds; `earlier` is the state before the last claim.
const char* const firstVersion[] = {
    "CREATE TABLE registers ("
    " number @number,"
    " address TEXT NOT NULL UNIQUE,"
    " trouble TEXT NOT NULL DEFAULT '')",
    "CREATE TABLE workers ("
    " number @number,"
    " name TEXT NOT NULL,"
    " seen BIGINT NOT NULL,"
    " ended BIGINT NOT NULL DEFAULT 0)",
    "CREATE INDEX alive ON workers (number) WHERE ended = 0",
    "CREATE TABLE receipts ("
    " number @number,"
    " register BIGINT NOT NULL REFERENCES registers,"
    " id TEXT NOT NULL,"
    " state TEXT NOT NULL DEFAULT 'queued',"
    " earlier TEXT NOT NULL DEFAULT 'queued',"
    " held BIGINT NOT NULL DEFAULT 0,"
    " attempt BIGINT NOT NULL DEFAULT 0,"
    " worker BIGINT NOT NULL DEFAULT 0,"
    " maybeSent BIGINT NOT NULL DEFAULT 0,"
    " fruitless BIGINT NOT NULL DEFAULT 0,"
    " due BIGINT NOT NULL DEFAULT 0,"
    " file TEXT NOT NULL,"
    " line BIGINT NOT NULL,"
    " text @bytes NOT NULL,"
    " digest @bytes NOT NULL,"
    " added BIGINT NOT NULL,"
    " changed BIGINT NOT NULL,"
    " uuid TEXT NOT NULL DEFAULT '',"
    " storage TEXT,"
    " document BIGINT,"
    " sign TEXT,"
    " total DOUBLE PRECISION,"
    " UNIQUE (register, id),"
    " CHECK (state IN ('queued', 'sent') OR state IN ('unknown', 'incomplete')"
    "  OR state IN ('registered', 'failed') OR state IN ('refused', 'cancelled')),"
    " CHECK ((state = 'sent') = (worker <> 0)),"
    " CHECK (state <> 'cancelled' OR maybeSent = 0),"
    " CHECK (state <> 'registered' OR (uuid <> '' AND storage IS NOT NULL AND document IS NOT NULL"
    "  AND sign IS NOT NULL AND total IS NOT NULL)))",
    "CREATE INDEX waiting ON receipts (register, due, number)"
    " WHERE held = 0 AND @waits",
    "CREATE INDEX underWay ON receipts (worker) WHERE state = 'sent'",
    "CREATE INDEX documents ON receipts (storage, document) WHERE storage IS NOT NULL",
    "CREATE TABLE events ("
    " number @number,"
    " at BIGINT NOT NULL,"
    " receipt BIGINT NOT NULL,"
    " event TEXT NOT NULL,"
    " attempt BIGINT NOT NULL,"
    " worker BIGINT NOT NULL,"
    " detail @bytes)",
    "CREATE INDEX history ON events (receipt)",
    "CREATE INDEX results ON events (number) WHERE event = 'finished'",
    "CREATE INDEX counted ON events (event, at)",
    "@eventsStay",
    "@eventsLast",
};

constexpr till::DialectWord wordsInFile[] = {
    waits,
    {"@eventsStay", "CREATE TRIGGER eventsStay BEFORE UPDATE ON events BEGIN"
                    " SELECT raise(ABORT, 'events are never altered'); END"},
    {"@eventsLast", "CREATE TRIGGER eventsLast BEFORE DELETE ON events"
                    " WHEN EXISTS (SELECT 1 FROM receipts WHERE number = OLD.receipt) BEGIN"
                    " SELECT raise(ABORT, 'events are never removed'); END"},
    {"@isRecovered", "json_extract(detail, '$.recovered')"},
    {"@damage", "PRAGMA integrity_check"},
    {"@inOrder", "SELECT ?"},
    {"@orderKnown", "SELECT ?"},
};

// Numbers of events are drawn before they are committed: whoever draws
// one for a result shares a lock until it is committed, and who reads results waits for that lock first.
constexpr till::DialectWord wordsOnServer[] = {
    waits,
    {"@eventsStay", "CREATE FUNCTION eventsStay() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
                    " IF TG_OP = 'UPDATE' OR EXISTS (SELECT 1 FROM receipts WHERE number = OLD.receipt) THEN"
                    "  RAISE 'events are never altered or removed';"
                    " END IF; RETURN OLD; END $$"},
    {"@eventsLast", "CREATE TRIGGER eventsLast BEFORE UPDATE OR DELETE ON events"
                    " FOR EACH ROW EXECUTE FUNCTION eventsStay()"},
    {"@isRecovered", "(convert_from(detail, 'UTF8')::json ->> 'recovered')::boolean"},
    {"@damage", "SELECT 'ok'"},
    {"@inOrder", "SELECT pg_advisory_xact_lock_shared('events'::regclass::oid::int, ?)"},
    {"@orderKnown", "SELECT pg_advisory_xact_lock('events'::regclass::oid::int, ?)"},
};

} // namespace

till::DatabaseFormat formatOf(const QString& place)
{
    return {applicationId, {firstVersion},
        till::isOnServer(place) ? std::span<const till::DialectWord>(wordsOnServer) : wordsInFile};
}

} // namespace queue
