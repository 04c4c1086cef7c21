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
