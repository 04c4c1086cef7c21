#pragma once

#include "frbase/basicfrdriver.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

#include <limits>
#include <type_traits>
#include <vector>

/// Results of operations in words, as the table of operations expects and shows them.
namespace words {

inline QString of(bool value)
{
    return QVariant(value).toString();
}

inline QString of(int value)
{
    return QString::number(value);
}

inline QString of(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("empty text") : u'"' + text + u'"';
}

inline QString of(const QVariant& value)
{
    return value.isValid() ? of(value.toString()) : QStringLiteral("empty value");
}

inline QString of(const QJsonObject& object)
{
    return object.isEmpty() ? QStringLiteral("empty object")
                            : QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

template <typename T>
QString of(const QList<T>& list)
{
    return list.isEmpty() ? QStringLiteral("empty list") : QStringLiteral("list of %1").arg(list.size());
}

template <typename K, typename V>
QString of(const QMap<K, V>& map)
{
    return map.isEmpty() ? QStringLiteral("empty map") : QStringLiteral("map of %1").arg(map.size());
}

inline QString of(const std::vector<std::vector<unsigned char>>& rows)
{
    return QStringLiteral("%1 rows").arg(rows.size());
}

inline QString of(const MoneyCounters& counters)
{
    return QStringLiteral("count %1, sum %2").arg(counters.count).arg(counters.sum);
}

inline QString record(bool isEmpty)
{
    return isEmpty ? QStringLiteral("empty record") : QStringLiteral("filled record");
}

inline QString of(const FiscalInfo& info)
{
    const QString texts =
        info.fnNumber + info.registrationNumber + info.shiftNumber + info.taxSystem + info.fiscalSign;
    return record(
        !info.dateTime.isValid() && texts.isEmpty() && info.fiscalDocumentNumber == 0 && info.total == 0);
}

inline QString of(const FnInfo& info)
{
    return record(info.documentCount == std::numeric_limits<qint64>::min() && info.fnNumber.isEmpty() &&
                  !info.validUntil.isValid());
}

inline QString of(const OfdStatusInfo& info)
{
    return record(info.state == -1 && info.unsentDocuments == 0 && !info.firstUnsent.isValid());
}

inline QString of(const KkmRegisters& registers)
{
    return record(!registers.dateTime.isValid() && registers.shiftNumber.isEmpty() && registers.sales == 0 &&
                  registers.refunds == 0 && registers.cash == 0);
}

inline QString of(const FnDocument& document)
{
    return record(!document.dateTime.isValid() && document.fiscalSign.isEmpty() && document.total == 0);
}

inline QString of(const DeviceInfo& info)
{
    const QString all = info.getModelCode() + info.getModelName() + info.getProducerCode();
    return all.isEmpty() ? QStringLiteral("empty model and producer") : all;
}

inline QString of(const BasicFrSettings* settings)
{
    return settings ? QStringLiteral("the settings in force") : QStringLiteral("no settings");
}

/// What the call returns, "nothing" for void.
template <typename Call>
QString ofResult(const Call& call)
{
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        return QStringLiteral("nothing");
    } else {
        return of(call());
    }
}

} // namespace words
