#include "tests/driver/wire/wireclient.h"

#include "host/log/log4qt.h"
#include "tests/support/outcome.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

const Authority& authority()
{
    static const Authority instance;
    return instance;
}

hostruntime::TransportOptions trusting()
{
    hostruntime::TransportOptions options;
    options.caFile = QString::fromStdString(authority().caFile());
    return options;
}

void PrintTo(Operation operation, std::ostream* out)
{
    *out << (operation == Operation::Token ? "token" : operation == Operation::Sell ? "sell" : "report");
}

WireClient::WireClient(const std::string& baseAddress)
    : processor(Log4Qt::LogManager::logger(u"frdriver"_s, u"transport"_s))
{
    settings.setUrl(QString::fromStdString(baseAddress));
    settings.setGroupCode(u"g"_s);
    settings.setLogin(QString::fromUtf8(canaryLogin));
    settings.setPassword(QString::fromUtf8(canaryPassword));
    processor.setSettings(&settings);
    processor.setClientEmail(QString::fromUtf8(canaryContact));
}

QString WireClient::run(Operation operation)
{
    return outcomeOf([&] {
        switch (operation) {
        case Operation::Token:
            return processor.requestToken(true);
        case Operation::Sell:
            EXPECT_EQ(processor.sell({FrPosition()}, {{1, 10.0}}, {}), u"U"_s);
            return;
        case Operation::Report:
            EXPECT_EQ(processor.getDocumentStatus(u"U"_s), atolonline::Done);
        }
    });
}

QString requestOf(Operation operation)
{
    switch (operation) {
    case Operation::Token:
        return u"POST /v4/getToken"_s;
    case Operation::Sell:
        return u"POST /v4/g/sell"_s;
    default:
        return u"GET /v4/g/report/U"_s;
    }
}

QStringList transportLines(const QStringList& lines)
{
    QStringList found;
    for (const QString& line : lines) {
        if (line.startsWith(u"info: Атол.Онлайн: ") || line.startsWith(u"warn: Атол.Онлайн: ") ||
            line.startsWith(u"error: Атол.Онлайн: "))
            found << line;
    }
    return found;
}
