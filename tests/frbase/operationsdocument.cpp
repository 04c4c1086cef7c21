#include "tests/frbase/operations.h"

using namespace Qt::StringLiterals;

namespace {

// "info: text" as level and text; the text in code marks, so that a leading space stays.
QString shown(const QString& line)
{
    const qsizetype colon = line.indexOf(u':');
    return u"%1: `%2`"_s.arg(line.left(colon), line.mid(colon + 2));
}

QString shown(const QStringList& log)
{
    QStringList marked;
    for (const QString& line : log)
        marked << shown(line);
    return marked.join(u"<br>"_s);
}

QString row(const Operation& operation)
{
    return u"| `%1` | %2 | %3 | %4 |\n"_s.arg(operation.name,
        operation.does.isEmpty() ? operation.expectedValue : operation.does, shown(operation.expectedLog),
        operation.cloud);
}

} // namespace

QString operationsDocument()
{
    QString document = uR"(# Operations of a driver

Every operation that the host may call, what `BasicFrDriver` does by default, and what the cloud driver does
instead. An empty last column means that the cloud driver keeps the default. Values in log lines are those of
an example call. No default throws, except `connect`, `connectAtCurrentSpeed` and `isPortReady`, which report a
missing link. `frbase/basicfrdriver.h` tells the rest.

This file is generated from the table that the tests run (`tests/frbase/operations.cpp`); the build target
`operations_document` writes it anew, and a stale copy fails the tests.
)"_s;
    QString topic;
    for (const Operation& operation : operations()) {
        if (operation.topic != topic) {
            topic = operation.topic;
            document +=
                u"\n## %1\n\n| Operation | Default | Log | The cloud driver instead |\n|---|---|---|---|\n"_s
                    .arg(topic);
        }
        document += row(operation);
    }
    return document;
}
