#include "atolonline/commandprocessor.h"
#include "atolonline/exceptionfactory.h"
#include "atolonline/exceptions.h"
#include "host/log/log4qt.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <map>
#include <type_traits>

using namespace Qt::Literals::StringLiterals;

namespace {

static_assert(std::is_convertible_v<const QString&, atolonline::Exception>);

QString thrownBy(int code)
{
    return outcomeOf([&] { atolonline::ExceptionFactory::throwException(code, u"текст сервиса"_s); });
}

TEST(ErrorTable, MapsEachCodeToItsExceptionAndMessage)
{
    const std::map<int, QString> ofTheirOwn{
        {-1, u"returned"_s},
        {1, u"FrWorkWithServiceException: Не удалось обработать полученный чек"_s},
        {2, u"FrWorkWithServiceException: Некорректный ИНН организации"_s},
        {10, u"FrWorkWithServiceException: Некорректный токен"_s},
        {11, u"atolonline::TokenExpired: Срок действия токена истёк"_s},
        {12, u"FrWorkWithServiceException: Неверный логин или пароль"_s},
        {13, u"FrWorkWithServiceException: Ошибка валидации входящего запроса"_s},
        {20, u"FrWorkWithServiceException: Некорректный токен или код группы"_s},
        {21, u"FrWorkWithServiceException: Код группы не поддерживает данную версию протокола"_s},
        {30, u"FrDriverException: Документ с указанным идентификатором не найден"_s},
        {31, u"FrCommandNotSupportException: Команда не поддерживается"_s},
        {32, u"FrWorkWithServiceException: Некорректные данные в запросе"_s},
        {33, u"atolonline::DocumentExists: Документ с переданным идентификатором уже существует"_s},
        {34, u"atolonline::DocumentInProgress: Документ еще не обработан"_s},
        {40, u"FrNoConnectionException: Нет связи с ФР"_s},
        {41, u"FrNoConnectionException: Нет связи с ФР"_s},
        {50, u"FrNoConnectionException: Нет связи с ФР"_s},
    };
    for (int code = -3; code <= 3000; ++code) {
        const auto found = ofTheirOwn.find(code);
        const QString expected =
            found != ofTheirOwn.end() ? found->second : u"FrWorkWithServiceException: текст сервиса"_s;
        EXPECT_EQ(thrownBy(code), expected) << "code " << code;
    }
}

TEST(ErrorTable, ServiceExceptionsAreOneFamily)
{
    EXPECT_THROW(throw atolonline::TokenExpired(), atolonline::Exception);
    EXPECT_THROW(throw atolonline::DocumentExists(), atolonline::Exception);
    EXPECT_THROW(throw atolonline::DocumentInProgress(), BasicException);
}

// The log lines of a reply, then how it ends.
QStringList effectOf(const char* reply)
{
    const LogCapture log;
    const atolonline::CommandProcessor processor(Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s));
    const QString end = outcomeOf(
        [&] { processor.processResponseErrors(QJsonDocument::fromJson(reply).toVariant().toMap()); });
    return log.lines() << end;
}

struct Reply
{
    const char* name;
    const char* json;
    QStringList effect;
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
    EXPECT_EQ(effectOf(GetParam().json), GetParam().effect);
}

QString logged(const char* places)
{
    return u"error: Ответ от сервера содержит ошибку. Код "_s + QString::fromUtf8(places);
}

INSTANTIATE_TEST_SUITE_P(Replies, ErrorReply,
    testing::Values(
        Reply{"ExpiredToken", R"({"error": {"code": 11, "error_id": "x", "text": "t"}})",
            {logged("11, идентификатор x (t)"), u"atolonline::TokenExpired: Срок действия токена истёк"_s}},
        Reply{"CodeWithoutMessage", R"({"error": {"code": 7, "error_id": "x", "text": "нет места"}})",
            {logged("7, идентификатор x (нет места)"), u"FrWorkWithServiceException: нет места"_s}},
        Reply{"WithoutCodeIsLoggedAndIgnored", R"({"error": {"text": "t"}})",
            {logged("-1, идентификатор  (t)"), u"returned"_s}},
        Reply{"CodeThatIsNotANumber", R"({"error": {"code": "many", "text": "t"}})",
            {logged("many, идентификатор  (t)"), u"FrWorkWithServiceException: t"_s}},
        Reply{"PlaceholdersInTheTextStay", R"({"error": {"code": 32, "error_id": "%3", "text": "%1"}})",
            {logged("32, идентификатор %3 (%1)"),
                u"FrWorkWithServiceException: Некорректные данные в запросе"_s}},
        Reply{"EmptyError", R"({"error": {}})", {u"returned"_s}},
        Reply{"NullError", R"({"error": null})", {u"returned"_s}},
        Reply{"NoError", R"({"uuid": "u"})", {u"returned"_s}}),
    [](const testing::TestParamInfo<Reply>& reply) { return reply.param.name; });

// An error that is not an object is ignored; a code that is not a number is converted to one as far as
// possible.
INSTANTIATE_TEST_SUITE_P(Shapes, ErrorReply,
    testing::Values(Reply{"Text", R"({"error": "code"})", {u"returned"_s}},
        Reply{"List", R"({"error": [{"code": 1}]})", {u"returned"_s}},
        Reply{"Number", R"({"error": 1})", {u"returned"_s}},
        Reply{"True", R"({"error": true})", {u"returned"_s}},
        Reply{"CodeNull", R"({"error": {"code": null, "text": "t"}})",
            {logged(", идентификатор  (t)"), u"FrWorkWithServiceException: t"_s}},
        Reply{"CodeObject", R"({"error": {"code": {"a": 1}, "text": "t"}})",
            {logged(", идентификатор  (t)"), u"FrWorkWithServiceException: t"_s}},
        Reply{"CodeList", R"({"error": {"code": [11], "text": "t"}})",
            {logged(", идентификатор  (t)"), u"FrWorkWithServiceException: t"_s}},
        Reply{"CodeTrue", R"({"error": {"code": true, "text": "t"}})",
            {logged("true, идентификатор  (t)"),
                u"FrWorkWithServiceException: Не удалось обработать полученный чек"_s}},
        Reply{"CodeText", R"({"error": {"code": "11", "text": "t"}})",
            {logged("11, идентификатор  (t)"), u"atolonline::TokenExpired: Срок действия токена истёк"_s}},
        Reply{"CodeMinusOne", R"({"error": {"code": -1, "text": "t"}})",
            {logged("-1, идентификатор  (t)"), u"returned"_s}},
        Reply{"OnlyAnUnknownKey", R"({"error": {"a": 1}})", {logged("-1, идентификатор  ()"), u"returned"_s}},
        Reply{"IdAndTextThatAreNumbers", R"({"error": {"code": 7, "error_id": 5, "text": 6}})",
            {logged("7, идентификатор 5 (6)"), u"FrWorkWithServiceException: 6"_s}}),
    [](const testing::TestParamInfo<Reply>& reply) { return reply.param.name; });

} // namespace
