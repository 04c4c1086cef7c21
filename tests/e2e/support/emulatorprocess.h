#pragma once

#include "tests/support/process.h"

#include <QJsonObject>

#include <optional>

/// An emulator of the test's own on a free port; ends with the object, or by itself after ten minutes.
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

    std::optional<Process> process;
    QString address;
};
