#include "emulator/store/register.h"

#include <algorithm>

namespace emulator {

namespace {

std::string sixteenDigits(const char* prefix, std::int64_t serial)
{
    const std::string digits = std::to_string(serial);
    return prefix + std::string(8 - std::min<std::size_t>(8, digits.size()), '0') + digits;
}

} // namespace

std::string deviceCodeOf(const Register& where)
{
    constexpr std::size_t digits = 6;
    return "KKT" + where.registrationNumber.substr(where.registrationNumber.size() - digits);
}

Register newRegister(const std::string& groupCode, int number, std::int64_t serial)
{
    return {.groupCode = groupCode,
        .number = number,
        .storageNumber = sixteenDigits("00009907", serial),
        .registrationNumber = sixteenDigits("00001234", serial)};
}

} // namespace emulator
