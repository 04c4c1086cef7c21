#include "tests/emulator/support/goodreceipt.h"

emulator::Json goodReceipt(const std::string& externalId)
{
    emulator::Json receipt = emulator::Json::parse(R"({
        "timestamp": "01.03.2026 03:00:00",
        "external_id": "",
        "receipt": {
            "client": {"email": "buyer@example.com"},
            "company": {"email": "shop@example.com", "sno": "osn", "inn": "7700000000",
                "payment_address": "https://shop.example"},
            "items": [{"name": "Молоко 3,2 %", "price": 75.25, "quantity": 2, "sum": 150.5,
                "payment_method": "full_payment", "payment_object": "commodity", "vat": {"type": "vat10"}}],
            "payments": [{"type": 1, "sum": 150.5}],
            "total": 150.5
        }
    })");
    receipt["external_id"] = externalId;
    return receipt;
}

emulator::Json goodCorrection(const std::string& externalId)
{
    emulator::Json correction = emulator::Json::parse(R"({
        "timestamp": "01.03.2026 03:00:00",
        "external_id": "",
        "correction": {
            "company": {"sno": "osn", "inn": "7700000000", "payment_address": "https://shop.example"},
            "correction_info": {"type": "self", "base_date": "01.02.2026", "base_number": "1"},
            "payments": [{"type": 1, "sum": 150.5}],
            "vats": [{"type": "vat10", "sum": 13.68}]
        }
    })");
    correction["external_id"] = externalId;
    return correction;
}

emulator::Json changed(const emulator::Json& body, const std::string& pointer, const emulator::Json& value)
{
    const bool absent = value == "absent";
    const emulator::Json patch = {{"op", absent ? "remove" : "add"}, {"path", pointer}, {"value", value}};
    return body.patch(emulator::Json::array({patch}));
}
