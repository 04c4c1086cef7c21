#pragma once

#include "host/records/fiscaldocument.h"
#include "host/records/fiscalinfo.h"
#include "host/transport/restclient.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>

class AbstractFrDriver;
class QObject;
class VposFrDriver;

/// A configured register as the host gets it from the plugin's factory. It begins with an empty log and a
/// transport that has been asked nothing.
class Register
{
public:
    /// The transport will answer with these bodies, then with none.
    explicit Register(const QList<QByteArray>& answers);
    ~Register();
    Q_DISABLE_COPY_MOVE(Register)

    [[nodiscard]] AbstractFrDriver& driver() const;
    [[nodiscard]] VposFrDriver& cloudDriver() const;

    /// Opens a sale of one line, tells the buyer's contact and the taxation system and pays.
    void collect(const FiscalDocument& sale) const;

private:
    std::unique_ptr<QObject> device;
};

/// A sale with the identifier "till-1".
[[nodiscard]] FiscalDocument sale();
/// The body of a request as a map.
[[nodiscard]] QVariantMap bodyOf(const RestClient::Request& request);
/// What the service answers when it reports this error.
[[nodiscard]] QByteArray errorAnswer(int code);
