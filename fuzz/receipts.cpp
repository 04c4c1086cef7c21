#include "driver/atolonlinefrdriver.h"
#include "fuzz/inputfile.h"
#include "host/exceptions.h"
#include "plugin/atolonlinesettings.h"
#include "till/error.h"
#include "till/receipts/receiptfile.h"
#include "till/receipts/receiptparser.h"
#include "till/sale/registrar.h"
#include "till/wire/installedtransport.h"
#include "till/wire/recordingtransport.h"

#include <QJsonDocument>

#include <cstdlib>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// Composes the receipt as it would be sent: always JSON with the receipt's id.
void compose(const QJsonObject& json)
{
    RecordingTransport transport;
    const InstalledTransport installed(transport);
    AtolOnlineSettings settings;
    AtolOnlineFRDriver driver(&settings);
    const Receipt receipt = toReceipt(json);
    std::ignore = receipt.total();
    try {
        handOver(driver, receipt);
        std::ignore = driver.documentClose(receipt.document);
    } catch (const BasicException&) {
        return;
    }
    const QJsonObject sent = QJsonDocument::fromJson(transport.takeBody()).object();
    require(sent.value(u"external_id"_s) == json.value(u"id"_s));
}

// Reads all receipts; reading them a second time must give the same texts.
void read(const QString& path)
{
    static const ReceiptParser parser;
    ReceiptFile file(path);
    RawReceipt raw;
    QList<QByteArray> texts;
    while (file.next(raw)) {
        texts << raw.text;
        const auto parsed = parser.parse(raw.text);
        if (const auto* json = std::get_if<QJsonObject>(&parsed))
            compose(*json);
        else
            require(!std::get<ReceiptProblem>(parsed).rule.isEmpty());
    }
    file.rewind();
    for (const QByteArray& text : texts)
        require(file.next(raw) && raw.text == text);
    require(!file.next(raw));
}

void swallow(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

// The input is a file of receipts; it goes from the reader to the body that would be sent.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qInstallMessageHandler(swallow);
    static const InputFile input;
    try {
        read(input.written(data, size));
    } catch (const Error&) {
        return 0;
    }
    return 0;
}
