#include "till/sale/outcome.h"

#include "till/text.h"

namespace till {

const Cause* causeOf(ServiceCode code)
{
    return causeNamed(QString::number(static_cast<int>(code)));
}

Conclusion conclusionOf(SaleVerdict verdict)
{
    switch (verdict) {
    case SaleVerdict::Registered:
        return {Outcome::Registered, {}, {}};
    case SaleVerdict::Incomplete:
        return {Outcome::Incomplete,
            Text::tr("The service says that the receipt is registered, but its answer does not prove it"),
            Text::tr("Do NOT sell it under a new id. Running the same file again is safe and may fetch the "
                     "missing evidence.")};
    case SaleVerdict::Accepted:
        return {};
    case SaleVerdict::Refused:
        return {Outcome::Refused, Text::tr("The receipt was refused"),
            Text::tr("Nothing was registered. Correct the cause and run the receipt again.")};
    case SaleVerdict::AccountRefused:
        return {Outcome::Refused, Text::tr("The service refuses receipts of this account"), {}, true};
    case SaleVerdict::Failed:
        return {Outcome::Refused, Text::tr("The service could not register the receipt"),
            Text::tr("Nothing was registered, and this id is used up: sent again, it only returns the failed "
                     "document. Give the sale a new id and run it again.")};
    case SaleVerdict::ForeignId:
        return {Outcome::Refused, {},
            Text::tr("This sale is NOT registered. Give it an id of its own and run it again.")};
    case SaleVerdict::NotSent:
        return {Outcome::Unknown, Text::tr("Not sent, no connection"),
            Text::tr("This run has not sent the receipt. Running the same file again is safe."), true};
    case SaleVerdict::Unknown:
    case SaleVerdict::RefusedOnce:
    case SaleVerdict::Existing:
    case SaleVerdict::Unfinished:
    case SaleVerdict::FailedOnce:
        break;
    }
    return {Outcome::Unknown, Text::tr("The service's answer does not say whether the receipt is registered"),
        Text::tr("It may or may not be registered. Running the same file again is safe: a receipt that the "
                 "service already has is not registered twice."),
        true};
}

NextStep nextStepOf(SaleVerdict verdict, std::optional<ServiceCode> refusal)
{
    switch (verdict) {
    case SaleVerdict::Registered:
    case SaleVerdict::Accepted:
        return NextStep::None;
    case SaleVerdict::Refused: {
        const Cause* cause = refusal ? causeOf(*refusal) : nullptr;
        return cause ? cause->next : NextStep::Correct;
    }
    case SaleVerdict::AccountRefused:
        return NextStep::Account;
    case SaleVerdict::Failed:
    case SaleVerdict::ForeignId:
        return NextStep::NewId;
    default:
        return NextStep::Rerun;
    }
}

QString refusalAdvice(ServiceCode code)
{
    const Cause* cause = causeOf(code);
    if (!cause)
        return conclusionOf(SaleVerdict::Refused).advice;
    return Text::tr("Nothing was registered. %1").arg(textsOf(*cause).administrator);
}

QString accountAdvice(ServiceCode code)
{
    const QString cause = [&] {
        switch (code) {
        case ServiceCode::BlockedUser:
            return Text::tr("The account is blocked: ask the service.");
        case ServiceCode::WrongGroup:
            return Text::tr("Correct groupCode, or login and password, in the configuration.");
        case ServiceCode::WrongProtocol:
            return Text::tr("The group is for another version of the protocol: ask the service for one of "
                            "version 4 and correct groupCode in the configuration.");
        default:
            return Text::tr("Correct login and password in the configuration.");
        }
    }();
    return Text::tr("Nothing was registered, and no other receipt would be. %1 Then run the same file again.")
        .arg(cause);
}

} // namespace till
