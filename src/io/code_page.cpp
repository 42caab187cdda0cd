#include "code_page.h"

#include <array>
#include <cstdint>

namespace rainfold {

namespace {

// The characters of bytes 0x80 to 0x9F; the rest of the code page is Latin-1.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(char32_t c, std::string& out) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Decodes the UTF-8 sequence at text[i]; returns its length, 0 when it is malformed.
size_t DecodeUtf8(const std::string& text, size_t i, char32_t& c) {
    const auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    size_t length = 0;
    if (lead < 0x80) {
        c = lead;
        return 1;
    } else if ((lead & 0xE0) == 0xC0) {
        length = 2;
        c = lead & 0x1Fu;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        c = lead & 0x0Fu;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        c = lead & 0x07u;
    } else {
        return 0;
    }
    if (i + length > text.size())
        return 0;
    for (size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80)
            return 0;
        c = (c << 6) | (byte(i + k) & 0x3Fu);
    }
    static constexpr char32_t kShortest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kShortest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
        return 0;
    return length;
}

} // namespace

std::string Cp1252ToUtf8(const std::string& bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (char ch : bytes) {
        const unsigned char b = static_cast<unsigned char>(ch);
        AppendUtf8(b >= 0x80 && b < 0xA0 ? kHighControls[b - 0x80] : b, out);
    }
    return out;
}

bool Utf8ToCp1252(const std::string& text, std::string& bytes, std::string& refused) {
    bytes.clear();
    for (size_t i = 0; i < text.size();) {
        char32_t c = 0;
        const size_t length = DecodeUtf8(text, i, c);
        if (length == 0) {
            refused = text.substr(i, 1);
            return false;
        }
        int byte = c < 0x80 || (c >= 0xA0 && c <= 0xFF) ? static_cast<int>(c) : -1;
        for (size_t k = 0; byte < 0 && k < kHighControls.size(); ++k)
            if (kHighControls[k] == c)
                byte = static_cast<int>(0x80 + k);
        if (byte < 0) {
            refused = text.substr(i, length);
            return false;
        }
        bytes += static_cast<char>(byte);
        i += length;
    }
    return true;
}

} // namespace rainfold
