// A reply's body to lastResponse and the payload map: ours, and a bare QJsonDocument parse.

#include "atolonline/commandprocessor.h"
#include "bench/support/golden.h"
#include "bench/support/quietlog.h"
#include "host/log4qt.h"
#include "host/restclient.h"
#include "plugin/atolonlinesettings.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

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

QByteArray replyOf(qsizetype bytes)
{
    QJsonObject payload{{u"total"_s, 179.8}, {u"fn_number"_s, u"0000440300046840"_s}, {u"shift_number"_s, 17},
        {u"receipt_datetime"_s, u"05.03.2024 14:07:00"_s}, {u"fiscal_document_number"_s, 123},
        {u"ecr_registration_number"_s, u"0000111118041361"_s},
        {u"fiscal_document_attribute"_s, qint64(3449555941)}};
    const auto text = [&] {
        return QJsonDocument(QJsonObject{{u"status"_s, u"done"_s}, {u"error"_s, {}}, {u"payload"_s, payload}})
            .toJson(QJsonDocument::Compact);
    };
    QJsonArray lines;
    const QJsonObject line{{u"name"_s, u"Молоко «Луговое» 3,2 %"_s}, {u"sum"_s, 89.9}, {u"quantity"_s, 2}};
    const qsizetype lineSize = QJsonDocument(line).toJson(QJsonDocument::Compact).size() + 1;
    for (qsizetype left = bytes - text().size(); left >= lineSize; left -= lineSize)
        lines.append(line);
    if (!lines.isEmpty())
        payload.insert("items"_L1, lines);
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
    for (const qsizetype bytes : {qsizetype(300), qsizetype(5'000'000)}) {
        const QByteArray body = replyOf(bytes);
        const auto road = std::make_shared<Road>(body);
        require("reply", road->travel() == atolonline::Done && road->hasArrived(body), u"another reply"_s);
        add("reply/ours/" + std::to_string(bytes), [road] { return road->travel(); });
        add("reply/parse/" + std::to_string(bytes), [body] { return QJsonDocument::fromJson(body); });
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::ClearRegisteredBenchmarks();
}
