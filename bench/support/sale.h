#pragma once

#include <QString>

#include <string>
#include <vector>

namespace bench {

struct SaleLine
{
    QString name;
    std::string nameUtf8;
    /// Roubles a unit.
    double price;
    double quantity;
    /// Roubles.
    double sum;
    /// The host's code, an index of vatNames.
    int taxCode;
    /// The host's number minus one, an index of methodNames.
    int method;
    /// The host's number minus one, an index of objectNames.
    int object;
};

inline constexpr const char* vatNames[] = {"vat0", "vat10", "vat20", "vat110", "vat120", "none"};
inline constexpr const char* methodNames[] = {"full_prepayment", "prepayment", "advance", "full_payment"};
inline constexpr const char* objectNames[] = {"commodity", "excise", "job", "service"};

/// What every contender registers: the same receipt, each value in the form that suits the contender.
struct Sale
{
    std::vector<SaleLine> lines;
    /// Paid with type 1; roubles.
    double total = 0;
    /// The buyer's e-mail address.
    QString contact;
};

inline constexpr const char* externalId = "till-7-000123";
inline constexpr const char* buyer = "buyer@example.com";
inline constexpr const char* companyEmail = "shop@example.com";
inline constexpr const char* companyInn = "7700000000";
inline constexpr const char* paymentAddress = "https://shop.example.com";

/// Lines of 100 kinds in turn: names in Cyrillic, prices and quantities with and without a fraction.
[[nodiscard]] Sale sampleSale(int lines);

/// The local time in the format of the service's requests, without Qt.
[[nodiscard]] std::string timestampNow();

} // namespace bench
