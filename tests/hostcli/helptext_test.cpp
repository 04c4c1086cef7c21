#include "hostcli/helptext.h"

#include "hostcli/commandline.h"
#include "tests/hostcli/russian.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

QString answerTo(const QStringList& arguments)
{
    std::vector<std::string> texts{"frhost"};
    for (const QString& argument : arguments)
        texts.push_back(argument.toStdString());
    std::vector<const char*> argv;
    for (const std::string& text : texts)
        argv.push_back(text.c_str());
    const auto parsed = parseCommandLine(static_cast<int>(argv.size()), argv.data());
    const auto* answer = std::get_if<CommandLineText>(&parsed);
    return answer ? answer->text : u"(taken)"_s;
}

void expectNarrow(const QStringList& arguments)
{
    for (const QString& line : answerTo(arguments).split(u'\n'))
        EXPECT_LE(line.size(), 80) << line.toStdString();
}

TEST(Help, FitsIntoEightyColumnsInBothLanguages)
{
    for (const bool isRussian : {false, true}) {
        const auto russian = isRussian ? std::make_unique<Russian>() : nullptr;
        expectNarrow({u"--help"_s});
        for (const char* command : {"describe", "check", "doctor", "bundle", "explain", "sell", "send",
                 "collect", "info", "compose", "queue", "queue add", "queue work", "queue results",
                 "queue wait", "queue list", "queue show", "queue hold", "queue release", "queue cancel",
                 "queue retry", "queue stats", "queue audit", "queue export", "queue prune"})
            expectNarrow(QString::fromLatin1(command).split(u' ') + QStringList{u"--help"_s});
    }
}

TEST(Help, IsAllInTheUsersLanguage)
{
    const Russian russian;
    for (const QStringList& arguments :
        {QStringList{u"--help"_s}, QStringList{u"sell"_s, u"--help"_s}, QStringList{}}) {
        const QString help = answerTo(arguments);
        for (const char* english : {"Usage", "Options", "OPTIONS", "Subcommands", "Positionals", "REQUIRED",
                 "Print", "Display", "TEXT", "Excludes"})
            EXPECT_FALSE(help.contains(QString::fromLatin1(english))) << english << "\n"
                                                                      << help.toStdString();
        EXPECT_TRUE(help.contains(u"Параметры:"_s)) << help.toStdString();
    }
}

TEST(Help, IsShownWhereNothingIsAskedFor)
{
    EXPECT_EQ(answerTo({}), answerTo({u"--help"_s}));
}

struct Mistake
{
    QStringList arguments;
    QString answer;
    QString russian;
};

TEST(UsageError, NamesTheMistakeAndTheNearestName)
{
    const Mistake mistakes[] = {
        {{u"sel"_s, u"a.json"_s},
            u"There is no command \"sel\". Did you mean \"sell\"?\nMore: frhost --help"_s,
            u"Нет команды «sel». Возможно, «sell»?\nПодробнее: frhost --help"_s},
        {{u"queue"_s, u"resuts"_s},
            u"There is no command \"resuts\". Did you mean \"results\"?\nMore: frhost queue --help"_s,
            u"Нет команды «resuts». Возможно, «results»?\nПодробнее: frhost queue --help"_s},
        {{u"queue"_s, u"show"_s}, u"ID is missing.\nMore: frhost queue show --help"_s,
            u"Не указано: ID.\nПодробнее: frhost queue show --help"_s},
        {{u"queue"_s, u"prune"_s}, u"--older-than is missing.\nMore: frhost queue prune --help"_s,
            u"Не указано: --older-than.\nПодробнее: frhost queue prune --help"_s},
        {{u"queue"_s, u"results"_s, u"--after"_s, u"-1"_s},
            u"--after: the cursor is a number, as results shows it\nMore: frhost queue results --help"_s,
            u"--after: отметка места — число, как его показывает results\nПодробнее: frhost queue results --help"_s},
        {{u"queue"_s, u"results"_s, u"--after"_s, u"99999999999999999999"_s},
            u"--after: the cursor is a number, as results shows it\nMore: frhost queue results --help"_s,
            u"--after: отметка места — число, как его показывает results\nПодробнее: frhost queue results --help"_s},
        {{u"queue"_s, u"list"_s, u"--stat"_s, u"held"_s},
            u"There is no option \"--stat\". Did you mean \"--state\"?\nMore: frhost queue list --help"_s,
            u"Нет параметра «--stat». Возможно, «--state»?\nПодробнее: frhost queue list --help"_s},
        {{u"refund"_s}, u"There is no command \"refund\".\nMore: frhost --help"_s,
            u"Нет команды «refund».\nПодробнее: frhost --help"_s},
        {{u"--jsn"_s, u"check"_s},
            u"There is no option \"--jsn\". Did you mean \"--json\"?\nMore: frhost check --help"_s,
            u"Нет параметра «--jsn». Возможно, «--json»?\nПодробнее: frhost check --help"_s},
        {{u"sell"_s, u"a"_s, u"--qrdir=x"_s},
            u"There is no option \"--qrdir\". Did you mean \"--qr-dir\"?\nMore: frhost sell --help"_s,
            u"Нет параметра «--qrdir». Возможно, «--qr-dir»?\nПодробнее: frhost sell --help"_s},
        {{u"sell"_s, u"a"_s, u"-x"_s}, u"There is no option \"-x\".\nMore: frhost sell --help"_s,
            u"Нет параметра «-x».\nПодробнее: frhost sell --help"_s},
        {{u"--no-journal"_s, u"sell"_s, u"a"_s},
            u"The option \"--no-journal\" belongs after the command.\nMore: frhost sell --help"_s,
            u"Параметр «--no-journal» пишется после команды.\nПодробнее: frhost sell --help"_s},
        {{u"check"_s, u"a"_s}, u"\"a\" is one argument too many.\nMore: frhost check --help"_s,
            u"Лишний аргумент «a».\nПодробнее: frhost check --help"_s},
        {{u"sell"_s}, u"FILE is missing.\nMore: frhost sell --help"_s,
            u"Не указано: FILE.\nПодробнее: frhost sell --help"_s},
        {{u"info"_s}, u"UUID is missing.\nMore: frhost info --help"_s,
            u"Не указано: UUID.\nПодробнее: frhost info --help"_s},
        {{u"--json"_s}, u"A command is missing.\nMore: frhost --help"_s,
            u"Не указана команда.\nПодробнее: frhost --help"_s},
        {{u"check"_s, u"--config"_s}, u"--config needs exactly one value.\nMore: frhost check --help"_s,
            u"После --config нужно ровно одно значение.\nПодробнее: frhost check --help"_s},
        {{u"--log-level"_s, u"loud"_s, u"check"_s},
            u"--log-level: \"loud\" is not a level; the levels are debug, info, warning, error\nMore: frhost check --help"_s,
            u"--log-level: уровня «loud» нет; есть debug, info, warning, error\nПодробнее: frhost check --help"_s},
        {{u"sell"_s, u"a"_s, u"--journal"_s, u"j"_s, u"--no-journal"_s},
            u"--journal and --no-journal exclude each other.\nMore: frhost sell --help"_s,
            u"--journal и --no-journal несовместимы.\nПодробнее: frhost sell --help"_s},
    };
    for (const Mistake& mistake : mistakes) {
        EXPECT_EQ(answerTo(mistake.arguments), mistake.answer);
        const Russian russian;
        EXPECT_EQ(answerTo(mistake.arguments), mistake.russian);
    }
}

} // namespace
