#include "tests/support/qtprinters.h"
#include "till/config/queuesection.h"
#include "till/config/registerconfig.h"
#include "till/config/registersetup.h"
#include "till/device/loadedregister.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

// The terms of one section of register.ini(5).
QStringList termsIn(const QString& section)
{
    QFile file(QStringLiteral(REGISTER_INI_PAGE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    const QString rest = page.section(u".SH "_s + section + u'\n', 1);
    QStringList terms;
    static const QRegularExpression term(u"^\\.TP\n\\.B (\\S+)$"_s, QRegularExpression::MultilineOption);
    for (const auto& match : term.globalMatch(rest.section(u"\n.SH "_s, 0, 0)))
        terms << match.captured(1);
    terms.sort();
    return terms;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

TEST(PageOfTheConfiguration, NamesEverySettingOfTheRegister)
{
    const LoadedRegister fiscalRegister(pluginAt(QStringLiteral(PLUGIN_FOLDER) + u"/libatolonline.so"_s));
    EXPECT_EQ(termsIn(u"[register]"_s),
        sorted(settableNames(fiscalRegister.device()) + QStringList{u"passwordFile"_s}));
}

TEST(PageOfTheConfiguration, NamesEverySettingOfTheTransport)
{
    EXPECT_EQ(termsIn(u"[transport]"_s), sorted(transportKeys()));
}

TEST(PageOfTheConfiguration, NamesEverySettingOfTheQueue)
{
    EXPECT_EQ(termsIn(u"[queue]"_s), sorted(queueKeys()));
}

} // namespace
