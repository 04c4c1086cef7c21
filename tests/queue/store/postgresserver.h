#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

/// A PostgreSQL server of the tests, with a data folder of its own and a socket in it, reachable by nobody
/// else on the network. It ends with the process, however that ends.
class PostgresServer
{
public:
    /// Why there can be no server on this machine; empty when there can.
    [[nodiscard]] static QString whyMissing();
    /// The server of this process, started by the first call.
    [[nodiscard]] static PostgresServer& instance();

    PostgresServer();
    ~PostgresServer();
    Q_DISABLE_COPY_MOVE(PostgresServer)

    /// A place for a store: a service with an empty schema of its own.
    [[nodiscard]] QString newPlace();
    /// Kills the server and does not wait for its sessions.
    void kill();
    /// Starts it, and waits until it accepts connections.
    void start();
    /// Runs a statement as the owner of everything.
    void run(const QString& statement) const;

    [[nodiscard]] QString socketFolder() const { return folder.path(); }

private:
    [[nodiscard]] std::unique_ptr<QProcess> launched(
        const QString& program, const QStringList& arguments) const;
    [[nodiscard]] bool isReady() const;

    QTemporaryDir folder;
    std::unique_ptr<QProcess> server;
    int places = 0;
};
