#pragma once

#include "host/export.h"

#include <QString>

/// The document that is being opened or closed.
class HOST_EXPORT FiscalDocument
{
public:
    FiscalDocument();
    FiscalDocument(int type, const QString& identifier);
    FiscalDocument(const FiscalDocument&);
    FiscalDocument(FiscalDocument&&) noexcept;
    FiscalDocument& operator=(const FiscalDocument&);
    FiscalDocument& operator=(FiscalDocument&&) noexcept;
    ~FiscalDocument();

    /// 0 sale, 1 sale refund, 2 sale annulment, 3 refund annulment, 4 purchase, 5 purchase refund, 6 purchase
    /// annulment, 7 money in, 8 money out, 9 sale correction, 10 refund correction, 11 non-fiscal.
    [[nodiscard]] int getDocumentType() const { return documentType; }
    void setDocumentType(int value) { documentType = value; }

    /// The host's own identifier of the document, unique among all documents that the host ever sends.
    [[nodiscard]] QString getInternalIdentifier() const { return internalIdentifier; }
    void setInternalIdentifier(const QString& value) { internalIdentifier = value; }

private:
    int documentType = 0;
    QString internalIdentifier;
};
