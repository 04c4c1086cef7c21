#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <semaphore>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Call = Service::Call;

constexpr auto login = "canary-login";
constexpr auto password = "canary-password";
constexpr auto token = "canary-token";
constexpr auto contact = "canary@buyer.example";

constexpr auto tokenAnswer = R"({"error":null,"token":"canary-token","timestamp":"01.01.2026 00:00:00"})";
constexpr auto accepted = R"({"uuid":"u-1","status":"wait","error":null})";
constexpr auto waiting = R"({"uuid":"u-1","external_id":"r1","status":"wait","error":null})";
constexpr auto done =
    R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":160.0,
    "fn_number":"9999078900006364","shift_number":17,"receipt_datetime":"15.01.2020 21:10:05",
    "fiscal_document_number":29414,"fiscal_document_attribute":3449555941,
    "ecr_registration_number":"0000000004059261"}})";

// The service's answers, the last one of each kind repeated without end. They contain the secrets, as an
// answer may.
struct Case
{
    const char* name;
    std::vector<const char*> tokens;
    std::vector<const char*> sells;
    std::vector<const char*> reports;
    int exitCode;
};

const Case cases[] = {
    {"Success", {tokenAnswer}, {accepted}, {waiting, done}, 0},
    {"Refused", {tokenAnswer}, {R"({"status":"fail","error":{"error_id":"e","code":32,"type":"system",
            "text":"client.email canary@buyer.example, token canary-token"}})"},
        {}, 3},
    {"Failed", {tokenAnswer}, {accepted},
        {R"({"uuid":"u-1","status":"fail","payload":null,"error":{"error_id":"e","code":12,"type":"driver",
            "text":"canary-token canary-password"}})"},
        3},
    {"WrongPassword",
        {R"({"error":{"error_id":"e","code":12,"type":"system","text":"canary-password of canary-login is wrong"}})"},
        {}, {}, 1},
    {"UnknownError",
        {R"({"error":{"error_id":"e","code":99,"type":"system","text":"canary-password is wrong"}})"}, {}, {},
        4},
    {"EchoedAsErrorIdentifier", {tokenAnswer},
        {R"({"error":{"error_id":"canary-password canary-login","code":"canary-token","text":"canary-token"}})"},
        {}, 4},
    {"TruncatedToken", {R"({"error":null,"token":"canary-token","timest)"}, {}, {}, 4},
    {"ExpiredToken", {tokenAnswer},
        {R"({"status":"fail","error":{"error_id":"e","code":11,"type":"system","text":"canary-token"}})",
            accepted},
        {done}, 0},
    {"SellAnsweredByAGateway", {tokenAnswer}, {"<html>canary-token canary-password</html>"}, {}, 4},
    {"ReportAnsweredByAGateway", {tokenAnswer}, {accepted}, {"<html>canary-token canary-password</html>"}, 4},
};

const char* taken(const std::vector<const char*>& answers, std::size_t& used)
{
    return answers.empty() ? "" : answers[std::min(used++, answers.size() - 1)];
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A till whose frhost runs in a folder of its own.
class CanaryTill
{
public:
    explicit CanaryTill(const QString& url)
        : shop(url)
    {
        shop.configure(u"login"_s, QString::fromLatin1(login));
        shop.unconfigure(u"password"_s);
        shop.configure(u"passwordFile"_s, u"password"_s);
        std::ignore = shop.file(u"password"_s, password);
    }

    [[nodiscard]] static QByteArray receipt()
    {
        return receiptLine(u"r1"_s).replace("buyer@example.com", contact);
    }
    // The arguments of a program that runs `frhost sell` in the folder.
    [[nodiscard]] QStringList selling(const QString& level) const
    {
        return inFolder() + QStringList{frhostProgram()} +
               shop.arguments({u"--log-level"_s, level, u"sell"_s, u"--qr-dir"_s, u"qr"_s, u"-"_s});
    }
    [[nodiscard]] QStringList inFolder() const
    {
        return {u"-C"_s, work.path(), u"HOME="_s + work.path(), u"TMPDIR="_s + work.path(),
            u"XDG_STATE_HOME="_s + work.path()};
    }
    // The names of all files there, and their content.
    [[nodiscard]] std::pair<QStringList, QByteArray> written() const
    {
        QStringList names;
        QByteArray all;
        for (QDirIterator files(work.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
             files.hasNext();) {
            const QString path = files.next();
            names << QDir(work.path()).relativeFilePath(path);
            all += contentOf(path);
        }
        names.sort();
        return {names, all};
    }

    Shop shop;

private:
    QTemporaryDir work;
};

// What others see of a process.
QByteArray visible(qint64 process)
{
    const QString folder = u"/proc/%1/"_s.arg(process);
    return contentOf(folder + u"cmdline"_s) + contentOf(folder + u"environ"_s);
}

void PrintTo(const Case& of, std::ostream* out)
{
    *out << of.name;
}

class Canary : public testing::TestWithParam<std::tuple<Case, const char*>>
{
};

TEST_P(Canary, IsFoundNowhere)
{
    const auto& [answers, level] = GetParam();
    std::array<std::size_t, 3> used{};
    std::binary_semaphore asked(0);
    std::binary_semaphore looked(0);
    std::atomic<bool> isFirst = true;
    const Service service([&](Service::Request& request) {
        if (isFirst.exchange(false)) {
            asked.release();
            looked.acquire();
        }
        switch (request.call()) {
        case Call::Token:
            return request.answer(200, taken(answers.tokens, used[0]));
        case Call::Sell:
            return request.answer(200, taken(answers.sells, used[1]));
        case Call::Report:
            return request.answer(200, taken(answers.reports, used[2]));
        }
    });
    const CanaryTill till(service.url());
    Running frhost(u"env"_s, till.selling(QString::fromLatin1(level)));
    frhost.giveInput(CanaryTill::receipt());
    asked.acquire();
    const QByteArray seen = visible(frhost.id());
    looked.release();
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, answers.exitCode) << ran.err.toStdString();

    const auto [names, files] = till.written();
    QStringList expected{u"frhost/journal.db"_s};
    if (answers.exitCode == 0)
        expected << u"qr/r1.png"_s;
    else if (!answers.sells.empty())
        expected << u"frhost/journal.db-exchanges.jsonl"_s;
    EXPECT_EQ(names, expected);
    EXPECT_THAT(seen.toStdString(), testing::HasSubstr("--log-level"));
    // Only root can read the environment of a process that protects its memory.
    EXPECT_EQ(seen.contains("HOME="), geteuid() == 0);
    const bool isDebug = level == std::string("debug");
    const std::string logged = (ran.err + ran.out).toStdString();
    const std::string elsewhere = (seen + files).toStdString();
    for (const char* secret : {password, token, login, contact}) {
        EXPECT_EQ(elsewhere.find(secret), std::string::npos) << secret;
        const bool isForDevelopers = isDebug && (secret == login || secret == contact);
        EXPECT_TRUE(isForDevelopers || logged.find(secret) == std::string::npos) << secret << " in:\n"
                                                                                 << logged;
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Canary,
    testing::Combine(testing::ValuesIn(cases), testing::Values("debug", "info")),
    [](const auto& of) { return std::string(std::get<0>(of.param).name) + "At" + std::get<1>(of.param); });

TEST(CanaryInfo, IsMaskedInTheAnswerThatItShows)
{
    const Service service([&](Service::Request& request) {
        const bool isToken = request.call() == Call::Token;
        request.answer(
            200, isToken ? tokenAnswer : R"({"uuid":"canary-token","canary-password":["&#99;anary-password"],
                "login":"canary-login","status":"done","n":17})");
    });
    const CanaryTill till(service.url());
    const Ran shown = till.shop.frhost({u"info"_s, u"u-1"_s});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_EQ(shown.out.toStdString(),
        R"({"***":["***"],"login":"canary-login","n":17,"status":"done","uuid":"***"})"
        "\n");
}

// What a service says is escaped by the programs on its way, each in its manner.
TEST(CanaryEscaped, IsFoundNowhereInALog)
{
    for (const char* text :
        {"canary&#45;password &#x63;anary-token", "\\u0063anary\\u002Dpassword canary%2Dtoken",
            "canary\\u0026#45;password canary&amp;#45;token"}) {
        const QByteArray answer =
            R"({"error":{"error_id":"e","code":99,"type":"system","text":")" + QByteArray(text) + R"("}})";
        const Service service([&](Service::Request& request) {
            request.answer(200, request.call() == Call::Token ? tokenAnswer : answer.constData());
        });
        const CanaryTill till(service.url());
        for (const QString& level : {u"debug"_s, u"info"_s}) {
            Running frhost(u"env"_s, till.selling(level));
            frhost.giveInput(CanaryTill::receipt());
            const Ran ran = frhost.end();
            EXPECT_THAT(ran.err.toStdString(), testing::HasSubstr("*** ***"));
            EXPECT_THAT((ran.out + ran.err).toStdString(), testing::Not(testing::HasSubstr("password")));
        }
    }
}

// The output names the receipt as the service does, but the log does not.
TEST(CanaryIdentifiers, AreNotLoggedWhenTheyHoldASecret)
{
    const Service service([&](Service::Request& request) {
        switch (request.call()) {
        case Call::Token:
            return request.answer(200, tokenAnswer);
        case Call::Sell:
            return request.answer(
                200, R"({"uuid":"canary-token canary-password canary-login","status":"wait","error":null})");
        case Call::Report:
            return request.answer(200, R"({"uuid":"canary-token","status":"done","error":null,"payload":{
                "ofd_receipt_url":"https://canary-password/canary%2Dlogin"}})");
        }
    });
    const CanaryTill till(service.url());
    Running frhost(u"env"_s, till.selling(u"info"_s));
    frhost.giveInput(CanaryTill::receipt());
    const std::string logged = frhost.end().err.toStdString();
    EXPECT_THAT(logged, testing::HasSubstr("Чек отправлен, UUID: *** *** ***\n"));
    EXPECT_THAT(logged, testing::HasSubstr("Получение статуса документа по uuid: *** *** ***\n"));
    EXPECT_THAT(logged, testing::HasSubstr("Просмотр чека на сайте ОФД: https://***/"));
    for (const char* secret : {password, token, login})
        EXPECT_EQ(logged.find(secret), std::string::npos) << secret << " in:\n" << logged;
}

// The answer echoes the secrets as the programs on its way may escape them.
constexpr auto echo = R"({"status":"fail","error":{"error_id":"canary&#45;token","code":32,"type":"system",
    "text":"canary&#45;password &#x63;anary-token canary%2Dlogin \\u0063anary\\u002Dpassword canary@buyer.example"}})";

TEST(CanaryBundle, HoldsNoSecret)
{
    const Service service([&](Service::Request& request) {
        const bool isSell = request.call() == Call::Sell;
        request.answer(200, request.call() == Call::Token ? tokenAnswer
                            : isSell                      ? echo
                                                          : R"({"error":{"code":30}})");
    });
    const CanaryTill till(service.url());
    const auto ran = [&](const QStringList& arguments) {
        Running frhost(u"env"_s,
            till.inFolder() + QStringList{frhostProgram()} +
                till.shop.arguments(
                    QStringList{u"--log-file"_s, u"a.log"_s, u"--log-level"_s, u"debug"_s} + arguments));
        frhost.giveInput(CanaryTill::receipt());
        return frhost.end();
    };
    EXPECT_EQ(ran({u"sell"_s, u"-"_s}).exitCode, 3);
    const Ran bundled = ran({u"bundle"_s, u"b.tar.gz"_s});
    ASSERT_EQ(bundled.exitCode, 0) << bundled.err.toStdString();

    const QString unpack = u"tar xzf b.tar.gz && cat doctor.txt configuration.ini log.txt exchanges.jsonl"_s;
    const std::string all =
        run(u"env"_s, till.inFolder() + QStringList{u"sh"_s, u"-c"_s, unpack}).out.toStdString();
    for (const char* part : {"groupCode = shop_1", "password", "Time zone", "/sell", "\"code\":32"})
        EXPECT_THAT(all, testing::HasSubstr(part));
    QString plain = QString::fromStdString(all);
    for (const auto& [spelling, character] : {std::pair("&#45;", "-"), {"&#x63;", "c"}, {"%2D", "-"},
             {"\\u0063", "c"}, {"\\u002D", "-"}, {"\\u002d", "-"}})
        plain.replace(QString::fromLatin1(spelling), QString::fromLatin1(character), Qt::CaseInsensitive);
    for (const char* secret : {password, token, login, contact})
        EXPECT_FALSE(plain.contains(QString::fromLatin1(secret))) << secret << " in:\n" << all;
}

TEST(CanaryOfAll, SearchesEveryLogLineAndHidesItFromTheTests)
{
    const QByteArray before = qgetenv("E2E_LOG_EVERYTHING");
    qputenv("E2E_LOG_EVERYTHING", "1");
    const Service service([&](Service::Request& request) { request.answer(200, tokenAnswer); });
    const CanaryTill till(service.url());
    Running frhost(frhostProgram(), till.shop.arguments({u"check"_s}));
    EXPECT_TRUE(frhost.hasSaid(" debug frdriver.atolonline_0: "));
    EXPECT_EQ(frhost.end().err, QString());
    qputenv("E2E_LOG_EVERYTHING", before);
}

// The arguments of a shell that runs the command with core dumps of any size allowed.
QStringList allowedToDumpCore(const QStringList& command)
{
    return QStringList{u"-c"_s, u"ulimit -c unlimited && exec \"$0\" \"$@\""_s, u"env"_s} + command;
}

TEST(CanaryCrash, LeavesNoCoreDumpAndNoFileButTheJournal)
{
    std::binary_semaphore asked(0);
    const Service service([&](Service::Request& request) {
        if (request.call() == Call::Report)
            asked.release();
        request.answer(200, request.call() == Call::Token ? tokenAnswer : accepted);
    });
    const CanaryTill till(service.url());
    Running dumping(u"sh"_s, allowedToDumpCore(till.inFolder() + QStringList{u"sleep"_s, u"60"_s}));
    ASSERT_TRUE(comesTrue([&] { return visible(dumping.id()).startsWith("sleep"); }));
    dumping.signal(SIGABRT);
    EXPECT_EQ(dumping.end().exitCode, 128 + SIGABRT);
    if (till.written().first.isEmpty())
        GTEST_SKIP() << "a program that crashes here leaves no core dump in its folder; "
                     << contentOf(u"/proc/sys/kernel/core_pattern"_s).toStdString();

    const CanaryTill fresh(service.url());
    Running frhost(u"sh"_s, allowedToDumpCore(fresh.selling(u"debug"_s)));
    frhost.giveInput(CanaryTill::receipt());
    asked.acquire();
    frhost.signal(SIGABRT);
    EXPECT_EQ(frhost.end().exitCode, 128 + SIGABRT);
    const auto [names, files] = fresh.written();
    EXPECT_EQ(
        names, (QStringList{u"frhost/journal.db"_s, u"frhost/journal.db-shm"_s, u"frhost/journal.db-wal"_s}));
    for (const char* secret : {password, token, login, contact})
        EXPECT_FALSE(files.contains(secret)) << secret;
}

} // namespace
