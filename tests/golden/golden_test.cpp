#include "tests/support/process.h"
#include "tests/support/qtprinters.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// A case is a receipt (NAME.in.json) and what is sent for it (NAME.out.json), indented and with its time
// masked. scripts/accept-golden makes this test write the second file instead of comparing it.
const QDir folder(QStringLiteral(GOLDEN));
const bool isAccepting = qEnvironmentVariableIsSet("ACCEPT_GOLDEN");

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

QList<QByteArray> composed(const QStringList& inputs)
{
    QStringList arguments{u"--config"_s, folder.filePath(u"register.ini"_s), u"compose"_s};
    for (const QString& input : inputs)
        arguments << folder.filePath(input);
    const ProcessResult frhost = runProcess(QStringLiteral(FRHOST), arguments);
    EXPECT_EQ(frhost.exitCode, 0) << frhost.err.toStdString();
    QList<QByteArray> lines = frhost.out.split('\n');
    lines.removeLast();
    return lines;
}

QByteArray laidOut(const QByteArray& body)
{
    static const QRegularExpression time(u"^\\d\\d\\.\\d\\d\\.\\d{4} \\d\\d:\\d\\d:\\d\\d$"_s);
    QJsonDocument document = QJsonDocument::fromJson(body);
    EXPECT_EQ(document.toJson(QJsonDocument::Compact), body) << "not compact JSON in UTF-8";
    QJsonObject object = document.object();
    const QString timestamp = u"timestamp"_s;
    EXPECT_TRUE(time.match(object.value(timestamp).toString()).hasMatch()) << body.toStdString();
    object.insert(timestamp, u"dd.MM.yyyy hh:mm:ss"_s);
    return QJsonDocument(object).toJson();
}

QByteArray unifiedDiff(const QString& expectedFile, const QByteArray& actual)
{
    const QTemporaryDir work;
    const QString actualFile = work.filePath(u"actual"_s);
    writeFile(actualFile, actual);
    return runProcess(u"diff"_s, {u"-Nu"_s, expectedFile, actualFile}).out;
}

bool hasContent(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

TEST(Golden, EveryReceiptIsComposedAsExpected)
{
    QStringList inputs = folder.entryList({u"*.in.json"_s}, QDir::Files, QDir::Name);
    // What the driver makes of codes that it does not know is for composer_test.cpp alone: frhost refuses
    // them.
    ASSERT_TRUE(inputs.removeOne(u"unknown-codes.in.json"_s));
    ASSERT_FALSE(inputs.isEmpty());
    const QList<QByteArray> bodies = composed(inputs);
    ASSERT_EQ(bodies.size(), inputs.size());
    for (qsizetype i = 0; i < inputs.size(); ++i) {
        QString output = folder.filePath(inputs.at(i));
        output.replace(u".in.json"_s, u".out.json"_s);
        const QByteArray actual = laidOut(bodies.at(i));
        if (isAccepting)
            writeFile(output, actual);
        EXPECT_TRUE(hasContent(output, actual))
            << unifiedDiff(output, actual).toStdString()
            << "If the change is intended, scripts/accept-golden accepts it.";
    }
}

} // namespace
