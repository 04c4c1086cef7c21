#include "atolonline/commandprocessor.h"
#include "atolonline/exceptionfactory.h"
#include "atolonline/exceptions.h"
#include "host/log/log4qt.h"
#include "tests/support/logcapture.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <map>
#include <typeinfo>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Thrown
{
    const std::type_info* type = nullptr;
    QString message;

    bool operator==(const Thrown& other) const
    {
        return (type == other.type || (type && other.type && *type == *other.type)) &&
               message == other.message;
    }
};

void PrintTo(const Thrown& thrown, std::ostream* out)
{
    *out << (thrown.type ? thrown.type->name() : "nothing") << " \"" << thrown.message.toStdString() << '"';
}

template <typename E>
Thrown row(const char* message)
{
    return {&typeid(E), QString::fromUtf8(message)};
}

Thrown thrownBy(int code)
{
    try {
        atolonline::ExceptionFactory::throwException(code, u"текст сервиса"_s);
    } catch (const BasicException& e) {
        return {&typeid(e), e.tr().ru()};
    }
    return {};
}

TEST(ErrorTable, GivesEachCodeItsExceptionAndMessage)
{
    const std::map<int, Thrown> ofTheirOwn{
        {-1, Thrown{}},
        {1, row<FrWorkWithServiceException>("Не удалось обработать полученный чек")},
        {2, row<FrWorkWithServiceException>("Некорректный ИНН организации")},
        {10, row<FrWorkWithServiceException>("Некорректный токен")},
        {11, row<atolonline::TokenExpired>("Срок действия токена истёк")},
        {12, row<FrWorkWithServiceException>("Неверный логин или пароль")},
        {13, row<FrWorkWithServiceException>("Ошибка валидации входящего запроса")},
        {20, row<FrWorkWithServiceException>("Некорректный токен или код группы")},
        {21, row<FrWorkWithServiceException>("Код группы не поддерживает данную версию протокола")},
        {30, row<FrDriverException>("Документ с указанным идентификатором не найден")},
        {31, row<FrCommandNotSupportException>("Команда не поддерживается")},
        {32, row<FrWorkWithServiceException>("Некорректные данные в запросе")},
        {33, row<atolonline::DocumentExists>("Документ с переданным идентификатором уже существует")},
        {34, row<atolonline::DocumentInProgress>("Документ еще не обработан")},
        {40, row<FrNoConnectionException>("Нет связи с ФР")},
        {41, row<FrNoConnectionException>("Нет связи с ФР")},
        {50, row<FrNoConnectionException>("Нет связи с ФР")},
    };
    for (int code = -3; code <= 3000; ++code) {
        const auto found = ofTheirOwn.find(code);
        const Thrown expected =
            found != ofTheirOwn.end() ? found->second : row<FrWorkWithServiceException>("текст сервиса");
        EXPECT_EQ(thrownBy(code), expected) << "code " << code;
    }
}

TEST(ErrorTable, ServiceExceptionsAreOneFamily)
{
    EXPECT_THROW(throw atolonline::TokenExpired(), atolonline::Exception);
    EXPECT_THROW(throw atolonline::DocumentExists(), atolonline::Exception);
    EXPECT_THROW(throw atolonline::DocumentInProgress(), BasicException);
}

// What a reply leads to: the log lines, and the exception's message or "good".
QStringList outcomeOf(const char* reply)
{
    const LogCapture log;
    const atolonline::CommandProcessor processor(Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s));
    try {
        processor.processResponseErrors(QJsonDocument::fromJson(reply).toVariant().toMap());
    } catch (const BasicException& e) {
        return log.lines() << e.tr().ru();
    }
    return log.lines() << u"good"_s;
}

struct Reply
{
    const char* name;
    const char* json;
    QStringList outcome;
};

void PrintTo(const Reply& reply, std::ostream* out)
{
    *out << reply.json;
}

class ErrorReply : public testing::TestWithParam<Reply>
{
};

TEST_P(ErrorReply, IsLoggedOnceAndThenThrown)
{
    EXPECT_EQ(outcomeOf(GetParam().json), GetParam().outcome);
}

QString logged(const char* places)
{
    return u"error: Ответ от сервера содержит ошибку. Код "_s + QString::fromUtf8(places);
}

INSTANTIATE_TEST_SUITE_P(Replies, ErrorReply,
    testing::Values(Reply{"ExpiredToken", R"({"error": {"code": 11, "error_id": "x", "text": "t"}})",
                        {logged("11, идентификатор x (t)"), u"Срок действия токена истёк"_s}},
        Reply{"CodeWithoutMessage", R"({"error": {"code": 7, "error_id": "x", "text": "нет места"}})",
            {logged("7, идентификатор x (нет места)"), u"нет места"_s}},
        Reply{"WithoutCodeIsLoggedAndIgnored", R"({"error": {"text": "t"}})",
            {logged("-1, идентификатор  (t)"), u"good"_s}},
        Reply{"CodeThatIsNoNumber", R"({"error": {"code": "many", "text": "t"}})",
            {logged("many, идентификатор  (t)"), u"t"_s}},
        Reply{"PlaceholdersInTheTextStay", R"({"error": {"code": 32, "error_id": "%3", "text": "%1"}})",
            {logged("32, идентификатор %3 (%1)"), u"Некорректные данные в запросе"_s}},
        Reply{"EmptyError", R"({"error": {}})", {u"good"_s}},
        Reply{"NullError", R"({"error": null})", {u"good"_s}},
        Reply{"NoError", R"({"uuid": "u"})", {u"good"_s}}),
    [](const testing::TestParamInfo<Reply>& reply) { return reply.param.name; });

} // namespace
