#include "till/diagnosis/configurationcheck.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

RegisterConfig good()
{
    RegisterConfig config;
    config.file = u"r.ini"_s;
    config.settings = {{u"url"_s, u"https://service.example/v4/"_s}, {u"login"_s, u"l"_s},
        {u"password"_s, u"p"_s}, {u"groupCode"_s, u"g"_s}, {u"inn"_s, u"7700000009"_s},
        {u"email"_s, u"a@b.example"_s}, {u"paymentAddress"_s, u"https://b.example"_s}};
    return config;
}

RegisterConfig with(const char* name, const char* value)
{
    RegisterConfig config = good();
    for (Setting& setting : config.settings) {
        if (setting.name == QLatin1StringView(name))
            setting.value = QString::fromLatin1(value);
    }
    return config;
}

// The worst finding, as "grade subject".
std::pair<Grade, QString> worst(const RegisterConfig& config)
{
    const Finding finding = worstFirst(checkConfiguration(config)).first();
    return {finding.grade, finding.subject};
}

using Found = std::pair<Grade, QString>;

TEST(ConfigurationCheck, FindsNothingWhereNothingIsWrong)
{
    for (const Finding& finding : checkConfiguration(good()))
        EXPECT_EQ(finding.grade, Grade::Good) << finding.text.toStdString();
}

TEST(ConfigurationCheck, FindsWhatIsWrong)
{
    EXPECT_EQ(worst(with("url", "service.example/v4/")), Found(Grade::Fault, u"Address"_s));
    EXPECT_EQ(worst(with("url", "https:///v4/")), Found(Grade::Fault, u"Address"_s));
    EXPECT_EQ(worst(with("url", "")), Found(Grade::Fault, u"Address"_s));
    EXPECT_EQ(worst(with("url", "http://service.example/v4/")), Found(Grade::Warning, u"Address"_s));
    for (const char* loopback : {"http://127.0.0.1:1/", "http://localhost/", "http://[::1]:8/"})
        EXPECT_EQ(worst(with("url", loopback)).first, Grade::Good) << loopback;
    for (const char* name : {"login", "password", "groupCode"})
        EXPECT_EQ(worst(with(name, "")), Found(Grade::Fault, u"Account"_s)) << name;
    for (const char* number : {"", "77", "7700000000"})
        EXPECT_EQ(worst(with("inn", number)), Found(Grade::Warning, u"Taxpayer number"_s)) << number;
    for (const char* name : {"email", "paymentAddress"})
        EXPECT_EQ(worst(with(name, "")), Found(Grade::Warning, u"Company"_s)) << name;
}

TEST(ConfigurationCheck, ShowsNoPassword)
{
    for (const Finding& finding : checkConfiguration(with("url", "ftp://user:canary@x/")))
        EXPECT_FALSE(finding.text.contains(u"canary"_s)) << finding.text.toStdString();
}

TEST(Findings, BeginWithTheWorst)
{
    const QList<Finding> sorted = worstFirst({{Grade::Good, u"a"_s, {}}, {Grade::Warning, u"b"_s, {}},
        {Grade::Note, u"c"_s, {}}, {Grade::Fault, u"d"_s, {}}, {Grade::Good, u"e"_s, {}}});
    QString order;
    for (const Finding& finding : sorted)
        order += finding.subject;
    EXPECT_EQ(order.toStdString(), "dbace");
}

} // namespace
