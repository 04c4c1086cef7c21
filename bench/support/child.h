#pragma once

#include "bench/baselines/contender.h"

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

    explicit Responder(
        Wire wire, const QStringList& furtherArguments = {}, Child::Core core = Child::Core::Any);

    [[nodiscard]] const Endpoint& endpoint() const { return where; }

private:
    QTemporaryDir folder;
    Child child;
    Endpoint where;
};

/// PHP with its curl extension, when it is installed.
class Php
{
public:
    struct Result
    {
        double seconds;
        std::int64_t fiscalSign;
    };

    [[nodiscard]] static bool isInstalled();
    explicit Php(const Endpoint& endpoint);
    /// Registers the sample sale so often.
    [[nodiscard]] Result registerSales(int lines, int count);

private:
    Child child;
};

} // namespace bench
