#include "host/records/fiscaldocument.h"

FiscalDocument::FiscalDocument() = default;
FiscalDocument::FiscalDocument(const FiscalDocument&) = default;
FiscalDocument::FiscalDocument(FiscalDocument&&) noexcept = default;
FiscalDocument& FiscalDocument::operator=(const FiscalDocument&) = default;
FiscalDocument& FiscalDocument::operator=(FiscalDocument&&) noexcept = default;
FiscalDocument::~FiscalDocument() = default;

FiscalDocument::FiscalDocument(int type, const QString& identifier)
    : documentType(type)
    , internalIdentifier(identifier)
{
}
