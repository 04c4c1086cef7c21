// A reply's body to lastResponse and the payload map: ours, and a bare QJsonDocument parse.

#include "atolonline/commandprocessor.h"
#include "bench/support/golden.h"
#include "bench/support/quietlog.h"
#include "host/log/log4qt.h"
#include "host/transport/restclient.h"
#include "plugin/atolonlinesettings.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>

namespace {

using namespace bench;
using namespace Qt::Literals::StringLiterals;

/// The transport without its network: every request is answered by one body, parsed as RestClient does.
class CannedTransport : public RestClient
{
public:
    explicit CannedTransport(const QByteArray& reply)
        : body(reply)
    {
        MockFactory<RestClient>::mocked = this;
    }
    ~CannedTransport() override { MockFactory<RestClient>::mocked = nullptr; }

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

class Road
{
public:
    explicit Road(const QByteArray& body)
        : transport(body)
        , processor(Log4Qt::LogManager::logger(u"frdriver"_s, u"bench"_s))
    {
        settings.setUrl(u"http://127.0.0.1/v4/"_s);
        settings.setGroupCode(u"g"_s);
        processor.setSettings(&settings);
    }

    int travel() { return processor.getDocumentStatus(u"2ea26f17-0884-4f08-b120-306fc096a58f"_s); }
    [[nodiscard]] bool hasArrived(const QByteArray& body) const
    {
        const QJsonObject all = QJsonDocument::fromJson(body).object();
        return processor.getLastResponse() == all &&
               QJsonObject::fromVariantMap(processor.getLastDocumentFiscalInfo()) ==
                   all["payload"_L1].toObject();
    }

private:
    CannedTransport transport;
    AtolOnlineSettings settings;
    atolonline::CommandProcessor processor;
};

// A report of a receipt, brought to the wanted size by its link and by lines.
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

template <typename Work>
void add(const std::string& name, Work work)
{
    benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(work());
    });
}

} // namespace

int main(int argc, char** argv)
{
    quietLog();
    benchmark::Initialize(&argc, argv);
    const std::pair<const char*, QByteArray> bodies[] = {
        {"300", replyOf(300)}, {"5000000", replyOf(5'000'000)}};
    for (const auto& [name, body] : bodies) {
        const auto road = std::make_shared<Road>(body);
        road->travel();
        require(name, road->hasArrived(body), u"another reply"_s);
        add(std::string("reply/ours/") + name, [road] { return road->travel(); });
        add(std::string("reply/parse/") + name, [body] { return QJsonDocument::fromJson(body); });
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::ClearRegisteredBenchmarks();
}
