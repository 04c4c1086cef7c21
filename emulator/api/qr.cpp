#include "emulator/api/qr.h"

#include <qrencode.h>

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace emulator {

std::string qrText(const Json& payload, TimePoint time, int settlement)
{
    std::array<char, 64> sum{};
    std::snprintf(sum.data(), sum.size(), "%.2f", payload["total"].get<double>());
    return "t=" + qrTime(time) + "&s=" + sum.data() + "&fn=" + payload["fn_number"].get<std::string>() +
           "&i=" + std::to_string(payload["fiscal_document_number"].get<std::int64_t>()) +
           "&fp=" + std::to_string(payload["fiscal_document_attribute"].get<std::int64_t>()) +
           "&n=" + std::to_string(settlement);
}

std::string qrImage(const std::string& text)
{
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString(text.c_str(), 0, QR_ECLEVEL_M, QR_MODE_8, 1), &QRcode_free);
    if (!code)
        throw std::runtime_error("the text does not fit into a QR code");
    constexpr int quiet = 4;
    const std::string size = std::to_string(code->width + 2 * quiet);
    std::string path;
    for (int y = 0; y < code->width; ++y) {
        for (int x = 0; x < code->width; ++x) {
            if ((code->data[y * code->width + x] & 1) != 0)
                path += "M" + std::to_string(x + quiet) + " " + std::to_string(y + quiet) + "h1v1h-1z";
        }
    }
    return R"(<svg xmlns="http://www.w3.org/2000/svg" shape-rendering="crispEdges" viewBox="0 0 )" + size +
           " " + size + R"("><rect width="100%" height="100%" fill="#fff"/><path fill="#000" d=")" + path +
           R"("/></svg>)";
}

} // namespace emulator
