#pragma once

#include "host/export.h"
#include "host/records/efrdriver.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

/// One requisite of a fiscal document, identified by its tag.
///
/// An empty requisite has tag 0; its source data reads as 0 through toInt() and as empty text through
/// toString().
class HOST_EXPORT FdRequisite
{
public:
    using Map = QMap<EFrDriver::RequisiteTypes, FdRequisite>;

    FdRequisite();
    /// A requisite with one value.
    FdRequisite(EFrDriver::RequisiteTypes type, const QVariant& data);
    /// A composite requisite (a structure of the fiscal data format) with members.
    FdRequisite(EFrDriver::RequisiteTypes type, const Map& parts);
    /// A requisite of which only the encoded bytes are known.
    [[nodiscard]] static FdRequisite fromRawData(EFrDriver::RequisiteTypes type, const QByteArray& bytes);
    FdRequisite(const FdRequisite&);
    FdRequisite(FdRequisite&&) noexcept;
    FdRequisite& operator=(const FdRequisite&);
    FdRequisite& operator=(FdRequisite&&) noexcept;
    ~FdRequisite();

    [[nodiscard]] int getTag() const { return tag; }
    /// The value as the host received it.
    [[nodiscard]] QVariant getSourceData() const { return sourceData; }
    /// The encoded bytes; empty if the host has not encoded the requisite.
    [[nodiscard]] QByteArray getRawData() const { return rawData; }
    /// The requisite's name for people, in Russian; empty when the host has no name for the tag.
    [[nodiscard]] QString getDescription() const;
    /// The members of a composite requisite; empty for any other.
    [[nodiscard]] Map toMap() const { return members; }

private:
    int tag = 0;
    QVariant sourceData;
    QByteArray rawData;
    Map members;
};
