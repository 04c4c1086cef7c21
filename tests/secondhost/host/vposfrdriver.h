#pragma once

class FiscalDocument;
class QJsonObject;
class QString;

class VposFrDriver
{
public:
    virtual ~VposFrDriver() = default;
    virtual QString documentClose(const FiscalDocument&) = 0;
    virtual QJsonObject getDocumentInfo(const QString& uuid) = 0;
    virtual QJsonObject getLastResponse() const = 0;
};
