#include "hostcli/queue/views/metrics.h"

namespace frhost {

namespace {

QByteArray escaped(QByteArray text)
{
    return text.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
}

void begin(QByteArray& text, const char* name, const char* type, const char* help)
{
    text += QByteArray("# TYPE ") + name + ' ' + type + "\n# HELP " + name + ' ' + help + '\n';
}

} // namespace

QByteArray openMetrics(const queue::Overview& overview, const QString& address)
{
    const QByteArray where = "{register=\"" + escaped(address.toUtf8()) + '"';
    QByteArray text;
    const auto sample = [&](const QByteArray& name, const QByteArray& label, double value) {
        text += name + where + label + "} " + QByteArray::number(value, 'g', 15) + '\n';
    };
    begin(text, "frhost_queue_receipts", "gauge", "Receipts by state.");
    for (const QString& name : queue::stateNames()) {
        const auto found = overview.receipts.find(*queue::stateOf(name));
        sample("frhost_queue_receipts", ",state=\"" + name.toUtf8() + '"',
            found == overview.receipts.end() ? 0 : found->second);
    }
    begin(text, "frhost_queue_held", "gauge", "Unfinished receipts that wait for a person.");
    sample("frhost_queue_held", {}, overview.held);
    begin(text, "frhost_queue_oldest_seconds", "gauge",
        "Age of the oldest receipt that workers have to finish.");
    sample("frhost_queue_oldest_seconds", {},
        static_cast<double>(overview.oldest.value_or(std::chrono::milliseconds(0)).count()) / 1000);
    begin(text, "frhost_queue_trouble", "gauge", "1 while the register is paused.");
    sample("frhost_queue_trouble", {}, overview.trouble.isEmpty() ? 0 : 1);
    // No counter: what is pruned is not counted any more.
    begin(text, "frhost_queue_events", "gauge", "Events in the history of the receipts in the queue.");
    for (const auto& [name, count] : overview.events)
        sample("frhost_queue_events", ",event=\"" + name.toUtf8() + '"', count);
    return text + "# EOF\n";
}

} // namespace frhost
