#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

const std::string gs1 = "010463003407001221CMK45BrhN0WLf\x1D";

std::string bytes(std::size_t count)
{
    std::string text = "44";
    for (std::size_t i = 1; i < count; ++i)
        text += " 4D";
    return text;
}

} // namespace

std::vector<Row> codeRows()
{
    const std::string code = item + "/nomenclature_code";
    const Answers wrongCode = refused("PatternMismatch: #/receipt.items[0].nomenclature_code");
    const Answers wrongInOlder = refusedInOlder("PatternMismatch: #/receipt.items[0].nomenclature_code");
    return {
        {"bytes of a DataMatrix", 'd', code, "44 4D 04 36 03 89 39 FC 43 4D 4B 34 35 42 72 68 4E 30 57 4C 66",
            accepted()},
        {"bytes of a tobacco block", 'd', code,
            "44 4D 04 2F 1F 96 81 78 4A 67 58 4A 35 2E 54 31 31 32 30 30 30", accepted()},
        {"bytes of an EAN-13", 'd', code, "45 0D 04 30 77 19 57 61", accepted()},
        {"bytes of a fur sign", 'd', code,
            "52 46 52 55 2D 34 33 30 33 30 32 2D 41 42 43 31 32 33 34 35 36 37", accepted()},
        {"bytes in small letters", 'd', code, "45 0d 04 30 77 19 57 61", accepted()},
        {"bytes of a product code", 'd', code, bytes(32), accepted()},
        {"33 bytes", 'd', code, bytes(33), wrongCode},
        {"no bytes", 'd', code, "", wrongCode},
        {"bytes without spaces", 'd', code, "450D", wrongCode},
        {"bytes that are not hexadecimal", 'd', code, "45 0G", wrongCode},
        {"text of a GS1 code", 'd', code, gs1, wrongInOlder},
        {"text of a GS1 code with more after the serial", 'd', code,
            gs1 + "91EE06\x1D"
                  "92abcd",
            wrongInOlder},
        {"text of a GS1 code of 150 characters", 'd', code, gs1 + std::string(150 - gs1.size(), '9'),
            wrongInOlder},
        {"text of a GS1 code of 151 characters", 'd', code, gs1 + std::string(151 - gs1.size(), '9'),
            wrongCode},
        {"code of a tobacco packet", 'd', code, "04600439931256JgXJ5.TABcd+EfG", wrongInOlder},
        {"code of a tobacco packet, too short", 'd', code, "04600439931256JgXJ5.TABcd+Ef", wrongCode},
        {"a text that is not a code", 'd', code, "4606203090785", wrongCode},
    };
}

} // namespace editions
