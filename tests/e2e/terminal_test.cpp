#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"
#include "tests/support/hiddencharacters.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

// Clears the screen, turns the text round, begins a line, hides itself.
const QString hostile =
    u"a\x1b[2J\u009b31m\u007f\u202eb\u2066c\u200f\u2028\u2029\u200b\ufeffd\nr2: registered"_s;

// The same as JSON that hides nothing.
QByteArray hostileJson()
{
    QByteArray text;
    for (const QChar c : hostile) {
        const bool isPlain = c.isPrint() && c.unicode() < 0x7F;
        text += isPlain ? QByteArray(1, c.toLatin1())
                        : "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return text;
}

QByteArray filled(QByteArray text)
{
    return text.replace("HOSTILE", hostileJson());
}

// A service all of whose texts are hostile.
class HostileText : public testing::Test
{
protected:
    void answer(Service::Request& request) const
    {
        switch (request.call()) {
        case Service::Call::Token:
            return request.answer(200, isRefused ? refusal.constData() : R"({"error":null,"token":"t"})");
        case Service::Call::Sell:
            return request.answer(200, sold.constData());
        case Service::Call::Report:
            return request.answer(200, reported.constData());
        }
    }
    // Runs frhost, fails the test if a hidden character comes out of it.
    [[nodiscard]] Ran ran(QStringList more, bool json, const QByteArray& input = {}) const
    {
        QStringList arguments = shop.arguments(more);
        if (!json)
            arguments.removeAll(u"--json"_s);
        Ran all = run(frhostProgram(), arguments, input);
        EXPECT_FALSE(hasHiddenCharacter(all.out))
            << QByteArray(all.out.toUtf8()).toPercentEncoding().toStdString();
        EXPECT_FALSE(hasHiddenCharacter(all.err))
            << QByteArray(all.err.toUtf8()).toPercentEncoding().toStdString();
        for (const QString& line : (all.out + all.err).split(u'\n'))
            EXPECT_FALSE(line.startsWith(u"r2: registered"_s)) << line.toStdString();
        return all;
    }

    bool isRefused = false;
    const QByteArray refusal =
        filled(R"({"error":{"error_id":"HOSTILE","code":99,"type":"system","text":"HOSTILE"}})");
    QByteArray sold = filled(R"({"uuid":"HOSTILE","status":"wait","error":null})");
    QByteArray reported =
        filled(R"({"uuid":"HOSTILE","external_id":"HOSTILE","status":"done","error":null,"payload":
        {"total":160.0,"fn_number":"HOSTILE","shift_number":17,"receipt_datetime":"15.01.2020 21:10:05",
        "fiscal_document_number":29414,"fiscal_document_attribute":3449555941,
        "ecr_registration_number":"HOSTILE","ofd_receipt_url":"HOSTILE"}})");
    Service service{[this](Service::Request& request) { answer(request); }};
    Shop shop{service.url()};
    const QByteArray receipt = filled(receiptLine(u"HOSTILE"_s)).replace("Молоко", hostileJson());
};

TEST_F(HostileText, OfAServiceAndAReceiptDoesNotReachTheTerminal)
{
    EXPECT_THAT(ran({u"sell"_s, u"-"_s}, false, receipt).out.toStdString(), HasSubstr("a\uFFFD[2J\uFFFD31m"));
    std::ignore = ran({u"send"_s, u"-"_s}, false, receipt);
    std::ignore = ran({u"--log-level"_s, u"debug"_s, u"sell"_s, u"-"_s}, false, receipt);
    EXPECT_THAT(ran({u"info"_s, u"u"_s}, false).out.toStdString(), HasSubstr("a\\u001b[2J\\u009b31m\\u007f"));
    std::ignore = ran({u"sell"_s, u"-"_s}, false, filled(R"({"id":"a","HOSTILE":1})"));
    isRefused = true;
    EXPECT_THAT(ran({u"check"_s}, false).err.toStdString(), HasSubstr("a\uFFFD[2J\uFFFD31m"));
}

TEST_F(HostileText, IsEscapedInJsonWithItsValueKept)
{
    for (const char* command : {"sell", "send"}) {
        const Ran submitted = ran({QString::fromLatin1(command), u"-"_s}, true, receipt);
        EXPECT_EQ(submitted.columns({u"id"_s}), QStringList{hostile}) << submitted.err.toStdString();
    }
    const Ran asked = ran({u"info"_s, u"u"_s}, true);
    EXPECT_EQ(asked.columns({u"uuid"_s}), QStringList{hostile});
    const QStringList composing = shop.arguments({u"compose"_s, shop.file(u"hostile.json"_s, receipt)});
    const Ran composed = runOnTerminal(frhostProgram(), composing);
    // Other lines are of the log.
    EXPECT_EQ(composed.lines().last().value(u"external_id"_s).toString(), hostile);
    EXPECT_FALSE(hasHiddenCharacter(QString(composed.out).remove(u'\r'))) << composed.out.toStdString();
    EXPECT_THAT(composed.out.toStdString(), HasSubstr("\\u202e"));
    EXPECT_THAT(run(frhostProgram(), composing).out.toStdString(), HasSubstr("\u202e"))
        << "as it would be sent";
}

TEST_F(HostileText, OfTheConfigurationDoesNotReachTheTerminal)
{
    shop.configure(u"paymentAddress"_s, QString(hostile).remove(u'\n'));
    EXPECT_THAT(ran({u"describe"_s}, false).out.toStdString(), HasSubstr("a\uFFFD[2J\uFFFD31m"));
    EXPECT_THAT(ran({u"describe"_s}, true).out.toStdString(), HasSubstr("a\\u001b[2J\\u009b31m"));
    shop.configure(u"url"_s, service.url() + u"%E2%80%AE%C2%9B"_s);
    std::ignore = ran({u"check"_s}, false);
    std::ignore = ran({u"check"_s}, true);
}

} // namespace
