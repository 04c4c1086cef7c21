#include "tests/emulator/rules/editions.h"

namespace editions {

Answers accepted()
{
    return {};
}

Answers refused(const std::string& wrong)
{
    return {wrong, wrong, wrong};
}

Answers refusedInOlder(const std::string& wrong)
{
    return {wrong, "", ""};
}

Answers refusedByLetter(const std::string& wrong)
{
    return {wrong, wrong, ""};
}

Answers refusedInNewer(const std::string& wrong)
{
    return {"", wrong, wrong};
}

std::string letters(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += "ж";
    return text;
}

} // namespace editions
