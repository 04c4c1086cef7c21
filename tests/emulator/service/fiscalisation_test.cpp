#include "emulator/service/fiscalisation.h"

#include <gmock/gmock.h>

using namespace emulator;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Lt;

namespace {

const std::string site = "www.nalog.gov.ru";
constexpr TimePoint start = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1);

// Shift, receipt in the shift and document in the storage.
std::vector<std::int64_t> numbers(const Json& payload)
{
    return {payload["shift_number"], payload["fiscal_receipt_number"], payload["fiscal_document_number"]};
}

} // namespace

TEST(Register, NumbersReceiptsAfterRegistrationAndShiftReports)
{
    Register where = newRegister("g", 1, 1);
    EXPECT_THAT(numbers(registerReceipt(where, start, 100, 0, site)), ElementsAre(1, 1, 3));
    EXPECT_THAT(numbers(registerReceipt(where, start + 1h, 100, 0, site)), ElementsAre(1, 2, 4));
}

TEST(Register, ClosesAShiftAfter24HoursAndOpensTheNext)
{
    Register where = newRegister("g", 1, 1);
    EXPECT_THAT(numbers(registerReceipt(where, start, 100, 0, site)), ElementsAre(1, 1, 3));
    EXPECT_THAT(numbers(registerReceipt(where, start + 24h - 1s, 100, 0, site)), ElementsAre(1, 2, 4));
    EXPECT_THAT(numbers(registerReceipt(where, start + 24h, 100, 0, site)), ElementsAre(2, 1, 7));
}

TEST(Register, ClosesAFullShift)
{
    Register where = newRegister("g", 1, 1);
    EXPECT_THAT(numbers(registerReceipt(where, start, 100, 2, site)), ElementsAre(1, 1, 3));
    EXPECT_THAT(numbers(registerReceipt(where, start, 100, 2, site)), ElementsAre(1, 2, 4));
    EXPECT_THAT(numbers(registerReceipt(where, start, 100, 2, site)), ElementsAre(2, 1, 7));
}

TEST(Register, ReturnsThePayloadOfAStatusAnswer)
{
    Register where = newRegister("g", 1, 42);
    Json payload = registerReceipt(where, start + 59s, 15050, 0, site);
    const auto sign = payload["fiscal_document_attribute"].get<std::int64_t>();
    EXPECT_THAT(sign, AllOf(Ge(2147483648), Lt(4294967296)));
    payload.erase("fiscal_document_attribute");
    EXPECT_EQ(
        payload, Json::parse(R"({"total": 150.5, "ofd_inn": "7700000099", "fns_site": "www.nalog.gov.ru",
        "fn_number": "0000990700000042", "shift_number": 1, "receipt_datetime": "01.03.2026 03:00:00",
        "fiscal_receipt_number": 1, "fiscal_document_number": 3,
        "ecr_registration_number": "0000123400000042"})"));
}

TEST(Register, SignsEveryDocumentDifferently)
{
    Register one = newRegister("g", 1, 1);
    Register two = newRegister("g", 2, 2);
    const Json first = registerReceipt(one, start, 100, 0, site);
    EXPECT_NE(first["fiscal_document_attribute"],
        registerReceipt(one, start, 100, 0, site)["fiscal_document_attribute"]);
    EXPECT_NE(first["fiscal_document_attribute"],
        registerReceipt(two, start, 100, 0, site)["fiscal_document_attribute"]);
}
