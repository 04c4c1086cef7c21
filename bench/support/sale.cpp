#include "bench/support/sale.h"

#include <array>
#include <cmath>
#include <ctime>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

constexpr int kinds = 100;

SaleLine sampleLine(int number)
{
    const int kind = number % kinds;
    const double price = 15 + kind + (kind % 4) * 0.25;
    const double quantity = 1 + (kind % 5) * 0.5;
    const QString name = u"Молоко «Луговое» 3,2 %, бутылка № %1"_s.arg(kind + 1);
    return {name, name.toStdString(), price, quantity, std::round(price * quantity * 100) / 100, kind % 6,
        3 - kind % 4, kind / 4 % 4};
}

} // namespace

Sale sampleSale(int lines)
{
    Sale sale;
    sale.contact = QString::fromLatin1(buyer);
    for (int i = 0; i < lines; ++i) {
        sale.lines.push_back(sampleLine(i));
        sale.total += sale.lines.back().sum;
    }
    return sale;
}

std::string timestampNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 20> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%d.%m.%Y %H:%M:%S", &local);
    return {text.data(), size};
}

} // namespace bench
