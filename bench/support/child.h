#pragma once

#include "bench/support/endpoint.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace bench {

/// A program that answers on standard output and ends with its standard input.
class Child
{
public:
    enum class Core
    {
        /// Wherever its parent may run.
        Any,
        OfItsOwn,
    };

    Child(const QString& program, const QStringList& arguments, Core core = Core::Any);
    ~Child();

    /// The next line of its output; throws std::runtime_error when it ends instead.
    [[nodiscard]] QByteArray readLine();
    void write(const QByteArray& line) { process.write(line); }

private:
    QProcess process;
};

/// The service's side: the responder in a process of its own.
class Responder
{
public:
    enum class Wire
    {
        Plain,
        Tls,
    };

    explicit Responder(Wire wire, Child::Core core = Child::Core::Any);

    [[nodiscard]] const Endpoint& endpoint() const { return where; }

private:
    QTemporaryDir folder;
    Endpoint where;
    Child child;
};

} // namespace bench
