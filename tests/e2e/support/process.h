#pragma once

#include "tests/support/qtprinters.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QProcessEnvironment>
#include <QStringList>

#include <sys/types.h>

/// The password of the till and of its service. No program may show it.
inline constexpr auto shopPassword = "till-canary";

/// A program that has run to its end.
struct Ran
{
    int exitCode = -1;
    QString out;
    QString err;

    /// Standard output, read as one JSON object a line.
    [[nodiscard]] QList<QJsonObject> lines() const;
    /// One text for each line of JSON on standard output: the values of the keys, set apart by blanks; "-"
    /// for one that is missing.
    [[nodiscard]] QStringList columns(const QStringList& keys) const;
};

/// Whether all programs log at debug level, to be searched for secrets.
[[nodiscard]] bool isEverythingLogged();

/// What a program left, less the lines that it logged only because isEverythingLogged(). Fails the test where
/// the password of the shop or a token stands in any of it.
[[nodiscard]] Ran withoutSecrets(const Ran& ran);

/// What programs run with: the environment of the tests, and texts in English.
[[nodiscard]] QProcessEnvironment testEnvironment();

/// Runs a program to its end, at most two minutes.
[[nodiscard]] Ran run(const QString& program, const QStringList& arguments, const QByteArray& input = {});

/// The same with standard output going to a file, which may be a device.
[[nodiscard]] Ran runInto(const QString& file, const QString& program, const QStringList& arguments);

/// The same on a terminal, whose output is all in `out`.
[[nodiscard]] Ran runOnTerminal(const QString& program, const QStringList& arguments);

/// An emulator of its own on a free port; ends with the object, or by itself after ten minutes.
class EmulatorProcess
{
public:
    explicit EmulatorProcess(const QStringList& arguments = {});
    ~EmulatorProcess();
    Q_DISABLE_COPY_MOVE(EmulatorProcess)

    /// "http://127.0.0.1:PORT/possystem/v4/".
    [[nodiscard]] QString url() const { return address; }
    void stop();

    /// Sets a fault: the members of its JSON object, without the braces.
    void addFault(const QByteArray& members) const;
    void clearFaults() const;
    /// The reason that the emulator gives for its answer to this query of `expect`.
    [[nodiscard]] QString expect(const QString& query) const;
    /// The calls so far, at most 100: the endpoint of each, as in "token sell report".
    [[nodiscard]] QString calls() const;
    /// What these calls were on the wire, one after the other, secrets masked.
    [[nodiscard]] QString requests() const;

private:
    [[nodiscard]] QStringList exchanges(const QString& key) const;
    [[nodiscard]] QJsonObject api(const QString& path, const QStringList& arguments = {}) const;

    pid_t process = -1;
    QString address;
};
