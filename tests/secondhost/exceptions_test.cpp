#include "atolonline/exceptions.h"
#include "host/abstractfrdriver.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"
#include "host/vposfrdriver.h"
#include "register.h"

#include <QJsonObject>
#include <QMetaType>
#include <QString>

#include <gtest/gtest.h>

#include <functional>
#include <typeinfo>

using namespace Qt::StringLiterals;

namespace {

// The text of the exception, if it is an E and of no class derived from it.
template <typename E>
QString caughtAs(const std::function<void()>& call)
{
    try {
        call();
        return u"nothing was thrown"_s;
    } catch (const E& e) {
        return typeid(e) == typeid(E) ? e.tr().ru() : QString::fromUtf8(typeid(e).name());
    }
}

template <typename E>
QString refusedWith(int code)
{
    const Register cloud({errorAnswer(code)});
    cloud.collect(sale());
    return caughtAs<E>([&] { cloud.driver().checkClose(sale()); });
}

TEST(ExceptionsInASecondHost, AreEachCaughtAsThemselves)
{
    EXPECT_EQ(refusedWith<FrWorkWithServiceException>(2), u"Некорректный ИНН организации"_s);
    EXPECT_EQ(refusedWith<FrWorkWithServiceException>(7), u"words"_s);
    EXPECT_EQ(refusedWith<FrDriverException>(30), u"Документ с указанным идентификатором не найден"_s);
    EXPECT_EQ(refusedWith<FrCommandNotSupportException>(31), u"Команда не поддерживается"_s);
    EXPECT_EQ(refusedWith<FrNoConnectionException>(40), u"Нет связи с ФР"_s);
    EXPECT_EQ(refusedWith<atolonline::DocumentExists>(33),
        u"Документ с переданным идентификатором уже существует"_s);
    EXPECT_EQ(refusedWith<atolonline::DocumentInProgress>(34), u"Документ еще не обработан"_s);

    const Register cloud({});
    EXPECT_EQ(caughtAs<FrCommandException>([&] { cloud.driver().checkOpen({.identifier = {}, .type = 1}); }),
        u"Тип чека не поддерживается ФР"_s);
    EXPECT_EQ(caughtAs<FrWorkWithServiceException>([&] { cloud.driver().connect(); }), u"Нет связи с ФР"_s);
}

TEST(ExceptionsInASecondHost, ThatTheDriverDoesNotHandleWhilePollingReachTheHost)
{
    const Register cloud({R"({"uuid": "u-1"})", errorAnswer(11)});
    cloud.collect(sale());
    EXPECT_EQ(caughtAs<atolonline::TokenExpired>([&] { cloud.driver().checkClose(sale()); }),
        u"Срок действия токена истёк"_s);
}

TEST(ExceptionsInASecondHost, AreAllOfTheHostsFamily)
{
    const Register cloud({errorAnswer(33)});
    cloud.collect(sale());
    EXPECT_THROW(cloud.driver().checkClose(sale()), BasicException);
    EXPECT_THROW(cloud.driver().connect(), DriverException);
}

TEST(ErrorOfTheServiceInASecondHost, IsLoggedWithItsIdentifierAsText)
{
    refusedWith<FrWorkWithServiceException>(2);
    EXPECT_EQ(Log4Qt::Logger::lines.last(),
        u"error: Ответ от сервера содержит ошибку. Код 2, идентификатор 5 (words)"_s);
    ASSERT_EQ(Log4Qt::Logger::arguments.size(), 3);
    EXPECT_EQ(Log4Qt::Logger::arguments[1].typeId(), QMetaType::QString);
    EXPECT_EQ(Log4Qt::Logger::arguments[2].typeId(), QMetaType::QString);
}

} // namespace
