#include "emulator/values/digest.h"
#include "emulator/values/endpoint.h"
#include "emulator/values/identifiers.h"
#include "emulator/values/money.h"
#include "emulator/values/moscowtime.h"
#include "emulator/values/pattern.h"
#include "emulator/values/plaintext.h"

#include <gmock/gmock.h>

using namespace emulator;
using testing::MatchesRegex;

TEST(WholeParts, AcceptUnroundedDoubles)
{
    EXPECT_EQ(wholeParts(12.35, 100), 1235);
    EXPECT_EQ(wholeParts(0.1 + 0.2, 100), 30);
    EXPECT_EQ(wholeParts(160, 100), 16000);
    EXPECT_EQ(wholeParts(42949672.95, 100), 4294967295);
    EXPECT_EQ(wholeParts(0.0000009, 100), 0);
    EXPECT_EQ(wholeParts(1.234, 1000), 1234);
    EXPECT_EQ(wholeParts(9'999'999'999.99, 100), 999'999'999'999);
    EXPECT_EQ(wholeParts(10'000'000'000, 100), 1'000'000'000'000);
    EXPECT_EQ(wholeParts(0.1 + 0.2, 1'000'000), 300'000);
    EXPECT_EQ(wholeParts(99'999.999999, 1'000'000), 99'999'999'999);
}

TEST(WholeParts, RejectMoreDecimals)
{
    EXPECT_EQ(wholeParts(12.345, 100), std::nullopt);
    EXPECT_EQ(wholeParts(0.000002, 100), std::nullopt);
    EXPECT_EQ(wholeParts(33.0 + 1.0 / 3, 100), std::nullopt);
    EXPECT_EQ(wholeParts(1.2345, 1000), std::nullopt);
    EXPECT_EQ(wholeParts(1e300, 100), std::nullopt);
    EXPECT_EQ(wholeParts(10'000'000'000.01, 100), std::nullopt);
    EXPECT_EQ(wholeParts(9'999'999'999.995, 100), std::nullopt);
    EXPECT_EQ(wholeParts(1.0000005, 1'000'000), std::nullopt);
    EXPECT_EQ(wholeParts(0.0000005, 1'000'000), std::nullopt);
}

TEST(MoscowTime, IsThreeHoursAheadOfUtcInWinterAndSummer)
{
    using namespace std::chrono;
    EXPECT_EQ(moscowTime(sys_days(year(2026) / 1 / 15) + 18h + 10min + 5s), "15.01.2026 21:10:05");
    EXPECT_EQ(moscowTime(sys_days(year(2026) / 7 / 31) + 21h), "01.08.2026 00:00:00");
    EXPECT_EQ(qrTime(sys_days(year(2020) / 1 / 15) + 18h + 10min), "20200115T2110");
}

TEST(Timestamp, MustBeAValidTimeInTheServicesFormat)
{
    EXPECT_TRUE(isTimestamp("29.02.2024 23:59:59"));
    for (const char* wrong : {"", "29.02.2023 10:00:00", "2024-02-29 10:00:00", "01.01.2024 24:00:00",
             "01.01.2024 10:60:00", "01.01.2024", "1.1.2024 10:00:00", "01.01.2024 10:00:00 "})
        EXPECT_FALSE(isTimestamp(wrong)) << wrong;
}

TEST(Timestamp, MayBeInIsoFormWithAZone)
{
    for (const char* right : {"2026-03-01T10:00:00+03:00", "2026-03-01T10:00:00Z",
             "2026-03-01T10:00:00.123456-05:30", "2024-02-29T23:59:59.1Z"})
        EXPECT_TRUE(isIsoTimestamp(right)) << right;
    for (const char* wrong : {"", "2026-03-01", "2026-03-01T10:00:00", "2026-03-01 10:00:00+03:00",
             "2026-02-29T10:00:00Z", "2026-03-01T24:00:00Z", "2026-03-01T10:00:00.Z", "2026-03-01T10:00:00.1",
             "2026-03-01T10:00:00+3", "2026-03-01T10:00:00+24:00", "2026-03-01T10:00:00+03:60",
             "2026-03-01T10:00:00Z ", "01.03.2026 10:00:00"})
        EXPECT_FALSE(isIsoTimestamp(wrong)) << wrong;
}

TEST(Identifier, HasTheFormatThatClientsExpect)
{
    EXPECT_THAT(newUuid(), MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-8[0-9a-f]{3}-[0-9a-f]{12}"));
    EXPECT_NE(newUuid(), newUuid());
}

TEST(Endpoint, IsFoundByItsName)
{
    for (const Endpoint endpoint : knownEndpoints)
        EXPECT_EQ(endpointNamed(nameOf(endpoint)), endpoint) << nameOf(endpoint);
    EXPECT_EQ(endpointNamed("unknown"), Endpoint::Unknown);
    EXPECT_EQ(endpointNamed("buy"), Endpoint::Unknown);
}

TEST(EndpointSet, ContainsItsEndpointsOnly)
{
    const EndpointSet documents{Endpoint::Sell, Endpoint::Report};
    EXPECT_TRUE(documents.contains(Endpoint::Sell));
    EXPECT_TRUE(documents.contains(Endpoint::Report));
    EXPECT_FALSE(documents.contains(Endpoint::Token));
    EXPECT_FALSE(documents.contains(Endpoint::Unknown));
}

TEST(Pattern, SupportsStarsAndQuestionMarks)
{
    EXPECT_TRUE(matches("till-7-001", "till-7-001"));
    EXPECT_TRUE(matches("till-7-001", "till-*"));
    EXPECT_TRUE(matches("till-7-001", "*001"));
    EXPECT_TRUE(matches("till-7-001", "t*l-?-*1"));
    EXPECT_TRUE(matches("", "*"));
    EXPECT_FALSE(matches("till-7-001", "till-?"));
    EXPECT_FALSE(matches("till-7-001", ""));
    EXPECT_FALSE(matches("aab", "*ab?"));
    EXPECT_TRUE(matches("чек-1", "?е?-1"));
    EXPECT_TRUE(matches("чек-1", "*?-1"));
    EXPECT_FALSE(matches("чек", "????"));
    EXPECT_FALSE(matches("чек", "*????"));
}

TEST(Pattern, LooksBeyondAZeroByte)
{
    using namespace std::string_view_literals;
    EXPECT_FALSE(matches("a\0b"sv, "a"sv));
    EXPECT_FALSE(matches("a"sv, "a\0b"sv));
    EXPECT_TRUE(matches("a\0b"sv, "a?b"sv));
}

TEST(PlainText, IsUtf8WithoutControlCharacters)
{
    using namespace std::string_view_literals;
    for (const std::string_view good :
        {""sv, " ~"sv, "Чек № 1"sv, "\xC2\xA0"sv, "\xDF\xBF"sv, "\xE0\xA0\x80"sv, "\xED\x9F\xBF"sv,
            "\xEE\x80\x80"sv, "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv})
        EXPECT_TRUE(isPlainText(good)) << good;
    for (const std::string_view bad :
        {"a\0b"sv, "\x1F"sv, "\x7F"sv, "\x80"sv, "\xBF"sv, "\xC1\xBF"sv, "\xC2"sv, "\xC2 "sv, "\xC2\x80"sv,
            "\xC2\x9F"sv, "\xE0\x9F\xBF"sv, "\xED\xA0\x80"sv, "\xED\xBF\xBF"sv, "\xE1\x80"sv,
            "\xF0\x8F\xBF\xBF"sv, "\xF4\x90\x80\x80"sv, "\xF8\x88\x80\x80\x80"sv, "\xFF"sv})
        EXPECT_FALSE(isPlainText(bad)) << testing::PrintToString(bad);
}

TEST(Digest, IsSha256)
{
    EXPECT_EQ(digestOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(digestOf(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}
