#pragma once

#include <QString>

struct FiscalDocument
{
    QString getInternalIdentifier() const { return identifier; }
    int getDocumentType() const { return type; }

    QString identifier;
    int type = 0;
};
