#include "atolonline/commandprocessor.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/wire/rawserver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

// The real transport, which refuses a header that contains a line break. The service hands out the tokens in
// turn.
class Renewal : public testing::TestWithParam<const char*>
{
protected:
    Renewal()
    {
        settings.setUrl(QString::fromStdString(service.url()) + u'/');
        processor.setSettings(&settings);
    }

    std::atomic<int> tokens = 0;
    RawServer service{[this](Peer& peer, const std::string& request) {
        if (request.find("/getToken") != std::string::npos)
            peer.answer(200, std::string(R"({"token":")") + (++tokens == 1 ? GetParam() : "T2") + "\"}");
        else
            peer.answer(200, R"({"uuid":"u"})");
    }};
    AtolOnlineSettings settings;
    atolonline::CommandProcessor processor{Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s)};
};

TEST_P(Renewal, ReplacesATokenThatNoHeaderCanCarry)
{
    processor.requestToken(false);
    EXPECT_THROW(processor.sell({}, {}, {}), FrWorkWithServiceException);
    ASSERT_NO_THROW(processor.requestToken(true));
    EXPECT_EQ(processor.sell({}, {}, {}), u"u"_s);

    const std::vector<std::string> requests = service.requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests.at(1).find("\r\ntoken"), std::string::npos) << requests.at(1);
    EXPECT_NE(requests.at(1).find("\r\nContent-type: application/json; charset=utf-8\r\n"), std::string::npos)
        << requests.at(1);
    EXPECT_NE(requests.at(2).find("\r\ntoken: T2\r\n"), std::string::npos) << requests.at(2);
}

INSTANTIATE_TEST_SUITE_P(LineBreaks, Renewal, testing::Values(R"(T\n1)", R"(T1\r)", R"(\r\nT1: x)"));

} // namespace
