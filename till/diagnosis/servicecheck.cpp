#include "till/diagnosis/servicecheck.h"

#include "host/transport/peercertificate.h"
#include "host/vposfrdriver.h"
#include "till/sale/attempt.h"
#include "till/sale/obstacle.h"
#include "till/sale/session.h"
#include "till/text.h"

#include <QUuid>

#include <cmath>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// Receipts carry this machine's time; the service's own answers are at most seconds old.
constexpr qint64 toleratedSeconds = 120;
constexpr qint64 fewDays = 14;

QString subjectOf(const Error& error)
{
    return error.problem() == Problem::Connection ? Text::tr("Connection") : Text::tr("Login");
}

Finding askAboutNothing(Session& session)
{
    session.transport().startReceipt();
    const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    std::ignore = attempt([&] { std::ignore = session.fiscalRegister().service().getDocumentInfo(uuid); });
    Finding finding = judgeGroup(session.transport().seen().status,
        session.fiscalRegister().device().property("groupCode").toString());
    if (!session.transport().seen().status.arrived) {
        const Obstacle obstacle = obstacleIn(session.transport().failure());
        finding.text += u' ' + Text::tr("The cause: %1. %2").arg(obstacle.cause, obstacle.advice);
    }
    return finding;
}

} // namespace

QList<Finding> checkService(Session& session)
{
    try {
        session.connect();
    } catch (const Error& error) {
        return {{Grade::Fault, subjectOf(error), error.message(), error.problem()}};
    }
    QList<Finding> findings{{Grade::Good, Text::tr("Login"), Text::tr("login and password accepted")}};
    findings << judgeClock(session.transport().seen().token.time, QDateTime::currentDateTimeUtc())
             << judgeCertificate(session.transport().certificate(), QDateTime::currentDateTimeUtc())
             << askAboutNothing(session);
    return findings;
}

Finding judgeClock(const QDateTime& then, const QDateTime& now)
{
    const QString subject = Text::tr("Clock");
    if (!then.isValid())
        return {Grade::Note, subject, Text::tr("not checked: the service did not tell its time")};
    const qint64 ahead = then.secsTo(now);
    if (std::abs(ahead) <= toleratedSeconds)
        return {Grade::Good, subject, Text::tr("differs from the service's by %1 s").arg(std::abs(ahead))};
    const QString minutes = QString::number((std::abs(ahead) + 30) / 60);
    return {Grade::Warning, subject,
        (ahead > 0 ? Text::tr("This machine's clock is %1 min ahead of the service's.")
                   : Text::tr("This machine's clock is %1 min behind the service's."))
                .arg(minutes) +
            u' ' + Text::tr("Receipts carry its time. Correct clock or time zone.")};
}

Finding judgeCertificate(const std::optional<hostruntime::PeerCertificate>& certificate, const QDateTime& now)
{
    const QString subject = Text::tr("Certificate");
    if (!certificate)
        return {Grade::Note, subject, Text::tr("none: the connection is not encrypted")};
    if (!certificate->expires.isValid())
        return {Grade::Note, subject, Text::tr("accepted; it does not say until when it is valid")};
    const qint64 days = now.daysTo(certificate->expires);
    const QString until = certificate->expires.toString(Qt::ISODate);
    if (days < fewDays)
        return {Grade::Warning, subject,
            Text::tr("The service's certificate is valid until %1 only, days left: %2. Tell the service.")
                .arg(until, QString::number(days))};
    return {
        Grade::Good, subject, Text::tr("valid until %1, days left: %2").arg(until, QString::number(days))};
}

Finding judgeGroup(const ServiceAnswer& answer, const QString& group)
{
    const QString subject = Text::tr("Group");
    if (!answer.arrived)
        return {
            Grade::Fault, subject, Text::tr("Not checked: the service did not answer."), Problem::Connection};
    // Whoever may ask about documents of the group learns that there is none with this identifier.
    if (!answer.hasError || answer.errorCode == ServiceCode::UnknownDocument ||
        answer.errorCode == ServiceCode::DocumentInProgress)
        return {Grade::Good, subject, Text::tr("%1, known to the service").arg(group)};
    if (answer.errorCode == ServiceCode::WrongGroup)
        return {Grade::Fault, subject,
            Text::tr("The service does not know the group %1 for this login (code 20). Correct groupCode, or "
                     "login and "
                     "password.")
                .arg(group)};
    if (answer.errorCode == ServiceCode::WrongProtocol)
        return {Grade::Fault, subject,
            Text::tr("The group %1 is for another version of the protocol (code 21). Ask the service for a "
                     "group of "
                     "version 4 and correct groupCode.")
                .arg(group)};
    const QString code =
        answer.errorCode ? QString::number(static_cast<int>(*answer.errorCode)) : Text::tr("none");
    return {Grade::Warning, subject,
        Text::tr("Not checked: the service answers with another error (code %1: %2).")
            .arg(code, answer.errorText)};
}

} // namespace till
