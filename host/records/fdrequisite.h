#pragma once

#include "host/export.h"
#include "host/records/efrdriver.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

/// One requisite of a fiscal document, known by its tag number.
///
/// An empty requisite has tag 0; its source data reads as 0 through toInt() and as empty text through
/// toString().
class HOST_EXPORT FdRequisite
{
public:
    using Map = QMap<EFrDriver::RequisiteTypes, FdRequisite>;

    FdRequisite() = default;
    /// A requisite with one value. The description is the tag's name where the host knows it.
    FdRequisite(EFrDriver::RequisiteTypes tag, const QVariant& sourceData);
    /// A composite requisite (a structure of the fiscal data format) with members.
    FdRequisite(EFrDriver::RequisiteTypes tag, const Map& members);
    /// A requisite that is known by its encoded bytes only.
    [[nodiscard]] static FdRequisite fromRawData(EFrDriver::RequisiteTypes tag, const QByteArray& bytes);

    [[nodiscard]] int getTag() const { return tag; }
    /// The value as the host received it.
    [[nodiscard]] QVariant getSourceData() const { return sourceData; }
    /// The encoded bytes; empty where the host did not encode the requisite.
    [[nodiscard]] QByteArray getRawData() const { return rawData; }
    /// The name of the requisite for people, in Russian; empty for a tag that the host has no name for.
    [[nodiscard]] QString getDescription() const;
    /// The members of a composite requisite; empty for any other.
    [[nodiscard]] Map toMap() const { return members; }

private:
    int tag = 0;
    QVariant sourceData;
    QByteArray rawData;
    Map members;
};
