#include "hostcli/diagnosis/report.h"

#include "hostcli/terminal/texttable.h"
#include "till/text.h"

#include <QJsonObject>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString gradeText(Grade grade)
{
    switch (grade) {
    case Grade::Fault:
        return Text::tr("WRONG");
    case Grade::Warning:
        return Text::tr("warning");
    case Grade::Note:
        return Text::tr("note");
    case Grade::Good:
        break;
    }
    return Text::tr("ok");
}

QString gradeName(Grade grade)
{
    switch (grade) {
    case Grade::Fault:
        return u"fault"_s;
    case Grade::Warning:
        return u"warning"_s;
    case Grade::Note:
        return u"note"_s;
    case Grade::Good:
        break;
    }
    return u"good"_s;
}

} // namespace

QByteArray textOf(const QList<Finding>& findings)
{
    QList<QStringList> rows;
    for (const Finding& finding : findings)
        rows << QStringList{gradeText(finding.grade), finding.subject, finding.text};
    return textTable(rows).toUtf8();
}

QJsonArray jsonOf(const QList<Finding>& findings)
{
    QJsonArray array;
    for (const Finding& finding : findings)
        array << QJsonObject{{u"grade"_s, gradeName(finding.grade)}, {u"subject"_s, finding.subject},
            {u"text"_s, finding.text}};
    return array;
}

bool hasFault(const QList<Finding>& findings)
{
    return std::any_of(findings.begin(), findings.end(),
        [](const Finding& finding) { return finding.grade == Grade::Fault; });
}

ExitCode exitCodeOf(const QList<Finding>& findings)
{
    ExitCode code = ExitCode::Success;
    for (const Finding& finding : findings) {
        if (finding.grade == Grade::Fault)
            code = std::max(code, exitCodeOf(finding.problem));
    }
    return code;
}

} // namespace frhost
