#include "tests/frbase/operations.h"

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

const QString beginning = uR"(# Operations of a driver

Every operation that the host may call, what `BasicFrDriver` does by default, and what the cloud driver does
instead. An empty last column means that the cloud driver keeps the default. Values in log lines are those of
an example call. No default throws, except `connect`, `connectAtCurrentSpeed` and `isPortReady`, which report a
missing link. `frbase/basicfrdriver.h` tells the rest.

This file is generated from the table that the tests run (`tests/frbase/operations.cpp`); the build target
`operations_document` writes it anew, and a stale copy fails the tests.
)"_s;

// Turns "info: text" into level and text; the text as code, so that a leading space is kept.
QString shown(const QStringList& log)
{
    QStringList marked;
    for (const QString& line : log)
        marked << line.section(u": "_s, 0, 0) + u": `"_s + line.section(u": "_s, 1) + u'`';
    return marked.join(u"<br>"_s);
}

QString row(const Operation& operation)
{
    const QString does = operation.does.isEmpty() ? operation.value : operation.does;
    return u"| `%1` | %2 | %3 | %4 |\n"_s.arg(operation.name, does, shown(operation.log), operation.cloud);
}

} // namespace

// Writes the table of operations to standard output as a document.
int main()
{
    QString document = beginning;
    for (const OperationTopic& topic : operationTopics()) {
        document +=
            u"\n## %1\n\n| Operation | Default | Log | The cloud driver instead |\n|---|---|---|---|\n"_s.arg(
                topic.title);
        for (const Operation& operation : topic.operations)
            document += row(operation);
    }
    std::cout << document.toStdString();
}
