#include "atolonline/compactjson.h"

#include <QCborMap>
#include <QCborValue>
#include <QJsonDocument>
#include <QLocale>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

namespace atolonline {

namespace {

// QJsonDocument converts each key and value to a QString and then to a QByteArray before it appends it. The
// same object as CBOR is one buffer whose texts are already UTF-8; only its markup has to be replaced by that
// of JSON. The buffer comes from Qt, so nothing in it is checked. CBOR loses one thing: half a surrogate
// pair, which JSON can express, has become a question mark.
class Transcriber
{
public:
    explicit Transcriber(const QByteArray& cbor)
        : at(cbor.constData())
    {
        json.reserve(static_cast<std::size_t>(cbor.size() + cbor.size() / 4));
    }

    void transcribeValue()
    {
        const auto head = static_cast<quint8>(*at++);
        const quint64 argument = readArgument(head & 0x1F);
        switch (head >> 5) {
        case 0:
            json += std::to_string(argument);
            break;
        case 1:
            json += std::to_string(-1 - static_cast<qint64>(argument));
            break;
        case 3:
            transcribeText(static_cast<qsizetype>(argument));
            break;
        case 4:
            transcribeArray(argument);
            break;
        case 5:
            transcribeMap(argument);
            break;
        default:
            transcribeSimple(head, argument);
            break;
        }
    }

    std::string json;
    bool hasQuestionMark = false;

private:
    template <typename Number>
    [[nodiscard]] Number read()
    {
        const auto number = qFromBigEndian<Number>(at);
        at += sizeof(Number);
        return number;
    }

    [[nodiscard]] quint64 readArgument(int size)
    {
        switch (size) {
        case 24:
            return read<quint8>();
        case 25:
            return read<quint16>();
        case 26:
            return read<quint32>();
        case 27:
            return read<quint64>();
        default:
            return static_cast<quint64>(size);
        }
    }

    void transcribeArray(quint64 count)
    {
        json += '[';
        for (quint64 i = 0; i < count; ++i) {
            if (i != 0)
                json += ',';
            transcribeValue();
        }
        json += ']';
    }

    void transcribeMap(quint64 count)
    {
        json += '{';
        for (quint64 i = 0; i < count; ++i) {
            if (i != 0)
                json += ',';
            transcribeValue();
            json += ':';
            transcribeValue();
        }
        json += '}';
    }

    void transcribeText(qsizetype size)
    {
        const char* const end = at + size;
        json += '"';
        while (at != end) {
            const char* const special = std::find_if(at, end, isSpecial);
            json.append(at, special);
            at = special;
            if (at != end)
                appendSpecial(*at++);
        }
        json += '"';
    }

    static bool isSpecial(char c)
    {
        static constexpr auto table = [] {
            std::array<bool, 256> special{};
            std::fill_n(special.begin(), 0x20, true);
            special['"'] = special['\\'] = special['?'] = true;
            return special;
        }();
        return table[static_cast<quint8>(c)];
    }

    void appendSpecial(char c)
    {
        if (c == '?') {
            hasQuestionMark = true;
            json += c;
            return;
        }
        static constexpr std::string_view plain = "\"\\\b\f\n\r\t";
        static constexpr std::string_view letters = "\"\\bfnrt";
        static constexpr std::string_view digits = "0123456789abcdef";
        json += '\\';
        if (const std::size_t index = plain.find(c); index != std::string_view::npos) {
            json += letters[index];
            return;
        }
        json += "u00";
        json += digits[static_cast<quint8>(c) >> 4];
        json += digits[c & 0x0F];
    }

    void transcribeSimple(quint8 head, quint64 argument)
    {
        constexpr quint8 isFalse = 0xF4;
        constexpr quint8 isTrue = 0xF5;
        constexpr quint8 isDouble = 0xFB;
        const double number = head == isDouble ? std::bit_cast<double>(argument) : NAN;
        if (head == isFalse)
            json += "false";
        else if (head == isTrue)
            json += "true";
        else if (std::isfinite(number))
            json += QByteArray::number(number, 'g', QLocale::FloatingPointShortest).toStdString();
        else
            json += "null";
    }

    const char* at;
};

} // namespace

QByteArray compactJson(const QJsonObject& object)
{
    const QByteArray cbor = QCborValue(QCborMap::fromJsonObject(object)).toCbor();
    Transcriber transcriber(cbor);
    transcriber.transcribeValue();
    if (transcriber.hasQuestionMark)
        return QJsonDocument(object).toJson(QJsonDocument::Compact);
    return QByteArray::fromStdString(transcriber.json);
}

} // namespace atolonline
