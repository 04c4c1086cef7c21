#pragma once

#include "tests/support/process.h"
#include "tests/support/qtprinters.h"

#include <QJsonObject>
#include <QList>

/// The password of the shop and of its service. No program may show it.
inline constexpr auto shopPassword = "till-canary";

/// What frhost, or a program that runs it, left when it ended.
struct Ran
{
    int exitCode = -1;
    QString out;
    QString err;

    /// Standard output, read as one JSON object per line, without what concerns the run: its failure, its
    /// summary and the receipts that it did not reach.
    [[nodiscard]] QList<QJsonObject> lines() const;
    /// The line about the run with this key, "failure" or "summary"; empty when there is none.
    [[nodiscard]] QJsonObject lineWith(const QString& key) const;
    /// The ids of the receipts that the run did not reach.
    [[nodiscard]] QStringList unreached() const;
    /// One text for each line of JSON on standard output: the values of the keys, separated by spaces; "-"
    /// for a missing one.
    [[nodiscard]] QStringList columns(const QStringList& keys) const;
};

/// A running program whose texts are in English. Fails the test if the password of the shop or a token is in
/// anything that it wrote, and if
/// a line of JSON is not of the published format.
///
/// With E2E_LOG_EVERYTHING set, the program logs at debug level so that all of it is searched; end() removes
/// the additional lines again.
class Running : public Process
{
public:
    Running(const QString& program, const QStringList& arguments, const QString& outputFile = {});
    [[nodiscard]] Ran end();

private:
    QStringList given;
};

/// Runs such a program to its end.
[[nodiscard]] Ran run(const QString& program, const QStringList& arguments, const QByteArray& input = {});
/// The same on a terminal, whose output is all in `out`.
[[nodiscard]] Ran runOnTerminal(const QString& program, const QStringList& arguments);

/// Path of frhost.
[[nodiscard]] QString frhostProgram();
