#include "atolonline/commandprocessor.h"
#include "bench/receipts/benchmarks.h"
#include "bench/support/golden.h"
#include "host/log/log4qt.h"
#include "host/transport/restclient.h"
#include "plugin/atolonlinesettings.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

// The transport without its network: one body answers every request, parsed as RestClient does.
class CannedTransport : public RestClient
{
public:
    explicit CannedTransport(const QByteArray& reply)
        : body(reply)
    {
    }

    bool get(const QUrl&, const QJsonDocument&, const Headers&) override
    {
        response = QJsonDocument::fromJson(body).toVariant();
        return true;
    }
    [[nodiscard]] QVariant getResponseData() const override { return response; }

private:
    QByteArray body;
    QVariant response;
};

class Client
{
public:
    explicit Client(const QByteArray& body)
        : transport(body)
    {
        MockFactory<RestClient>::mocked = &transport;
        processor = std::make_unique<atolonline::CommandProcessor>(
            Log4Qt::LogManager::logger(u"frdriver"_s, u"bench"_s));
        MockFactory<RestClient>::mocked = nullptr;
        settings.setUrl(u"http://127.0.0.1/v4/"_s);
        settings.setGroupCode(u"g"_s);
        processor->setSettings(&settings);
    }

    int ask() { return processor->getDocumentStatus(u"2ea26f17-0884-4f08-b120-306fc096a58f"_s); }
    [[nodiscard]] bool holds(const QByteArray& body) const
    {
        const QJsonObject all = QJsonDocument::fromJson(body).object();
        return processor->getLastResponse() == all &&
               QJsonObject::fromVariantMap(processor->getLastDocumentFiscalInfo()) ==
                   all["payload"_L1].toObject();
    }

private:
    CannedTransport transport;
    AtolOnlineSettings settings;
    std::unique_ptr<atolonline::CommandProcessor> processor;
};

// The report of a receipt, padded to the size with lines and a long link.
QByteArray replyOf(qsizetype bytes)
{
    QJsonObject payload{{u"total"_s, 179.8}, {u"fn_number"_s, u"0000440300046840"_s}, {u"shift_number"_s, 17},
        {u"receipt_datetime"_s, u"05.03.2024 14:07:00"_s}, {u"fiscal_document_number"_s, 123},
        {u"ecr_registration_number"_s, u"0000111118041361"_s},
        {u"fiscal_document_attribute"_s, qint64(3449555941)}, {u"ofd_receipt_url"_s, u""_s}};
    const auto text = [&] {
        return QJsonDocument(QJsonObject{{u"status"_s, u"done"_s}, {u"error"_s, {}}, {u"payload"_s, payload}})
            .toJson(QJsonDocument::Compact);
    };
    QJsonArray lines;
    const QJsonObject line{{u"name"_s, u"Молоко «Луговое» 3,2 %"_s}, {u"sum"_s, 89.9}, {u"quantity"_s, 2}};
    const qsizetype lineSize = QJsonDocument(line).toJson(QJsonDocument::Compact).size() + 1;
    for (qsizetype left = bytes - text().size() - lineSize; left >= lineSize; left -= lineSize)
        lines.append(line);
    if (!lines.isEmpty())
        payload.insert("items"_L1, lines);
    payload.insert("ofd_receipt_url"_L1, QString(bytes - text().size(), u'r'));
    return text();
}

} // namespace

void addReplies()
{
    for (const qsizetype bytes : {300, 5'000'000}) {
        const QByteArray body = replyOf(bytes);
        const auto client = std::make_shared<Client>(body);
        client->ask();
        require("reply", client->holds(body), u"the body was not kept"_s);
        add("reply/ours/" + std::to_string(bytes), [client] { return client->ask(); });
        add("reply/parse/" + std::to_string(bytes), [body] { return QJsonDocument::fromJson(body); });
    }
}

} // namespace bench
