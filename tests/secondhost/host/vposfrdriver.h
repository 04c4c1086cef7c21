#pragma once

class QJsonObject;
class QString;
struct FiscalDocument;

class VposFrDriver
{
public:
    virtual ~VposFrDriver() = default;
    virtual QString documentClose(const FiscalDocument&) = 0;
    virtual QJsonObject getDocumentInfo(const QString& uuid) = 0;
    virtual QJsonObject getLastResponse() const = 0;
};
