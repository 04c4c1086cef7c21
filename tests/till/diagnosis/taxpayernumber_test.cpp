#include "till/diagnosis/taxpayernumber.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

TEST(TaxpayerNumberJudged, ByItsCheckDigits)
{
    EXPECT_EQ(judgeTaxpayerNumber(u"7700000009"_s), TaxpayerNumber::Good);
    EXPECT_EQ(judgeTaxpayerNumber(u"500100732259"_s), TaxpayerNumber::Good);
    for (const char* wrong : {"7700000000", "7700000090", "500100732250", "500100732359", "500100723259"})
        EXPECT_EQ(judgeTaxpayerNumber(QString::fromLatin1(wrong)), TaxpayerNumber::WrongCheckDigit) << wrong;
}

TEST(TaxpayerNumberJudged, ByItsDigits)
{
    for (const char* wrong : {"", "770000000", "77000000091", "77000000O9", "-770000009"})
        EXPECT_EQ(judgeTaxpayerNumber(QString::fromLatin1(wrong)), TaxpayerNumber::WrongLength) << wrong;
    EXPECT_EQ(judgeTaxpayerNumber(u"770000000\u0669"_s), TaxpayerNumber::WrongLength)
        << "another script's digit";
}

} // namespace
