#include "inventory_encoding.h"

namespace rainfold::cli {

namespace {

unsigned char Byte(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

void PutUtf8(unsigned code, std::string& out) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6);
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12);
        out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | code >> 18);
        out += static_cast<char>(0x80 | (code >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

constexpr char kNotText = '\xFF';

// How long the UTF-8 character that starts with `lead` is, 0 for a byte that starts none.
std::size_t LengthOf(unsigned char lead) {
    return lead < 0x80                    ? 1
           : lead >= 0xC2 && lead <= 0xDF ? 2
           : lead >= 0xE0 && lead <= 0xEF ? 3
           : lead >= 0xF0 && lead <= 0xF4 ? 4
                                          : 0;
}

// The second byte a lead byte allows: overlong forms, surrogates and code points beyond
// U+10FFFF are not UTF-8.
bool SecondFits(unsigned char lead, unsigned char second) {
    return (second & 0xC0) == 0x80 && !(lead == 0xE0 && second < 0xA0) &&
           !(lead == 0xED && second > 0x9F) && !(lead == 0xF0 && second < 0x90) &&
           !(lead == 0xF4 && second > 0x8F);
}

// True when the bytes from `at` to the end are the start of a UTF-8 character cut off there.
bool CutOff(std::string_view text, std::size_t at) {
    const std::size_t length = LengthOf(Byte(text, at));
    if (length < 2 || at + length <= text.size())
        return false;
    for (std::size_t k = at + 1; k < text.size(); ++k)
        if (k == at + 1 ? !SecondFits(Byte(text, at), Byte(text, k))
                        : (Byte(text, k) & 0xC0) != 0x80)
            return false;
    return true;
}

} // namespace

TextEncoding EncodingFromMark(std::string_view start, std::size_t& markLength) {
    markLength = 0;
    if (start.substr(0, 3) == "\xEF\xBB\xBF") {
        markLength = 3;
        return TextEncoding::Utf8;
    }
    if (start.substr(0, 2) == "\xFF\xFE" || start.substr(0, 2) == "\xFE\xFF") {
        markLength = 2;
        return start[0] == '\xFF' ? TextEncoding::Utf16LE : TextEncoding::Utf16BE;
    }
    return TextEncoding::Unknown;
}

std::size_t Utf8Length(std::string_view text, std::size_t at) {
    const unsigned char lead = Byte(text, at);
    const std::size_t length = LengthOf(lead);
    if (length == 0 || at + length > text.size())
        return 0;
    if (length > 1 && !SecondFits(lead, Byte(text, at + 1)))
        return 0;
    for (std::size_t k = 2; k < length; ++k)
        if ((Byte(text, at + k) & 0xC0) != 0x80)
            return 0;
    return length;
}

bool IsUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = Utf8Length(text, i);
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

void EncodingCensus::Add(std::string_view bytes) {
    std::string joined;
    if (!pending_.empty()) {
        joined = pending_ + std::string(bytes);
        bytes = joined;
        pending_.clear();
    }
    for (std::size_t i = 0; i < bytes.size();) {
        if (Byte(bytes, i) < 0x80) {
            ++i;
            continue;
        }
        const std::size_t length = Utf8Length(bytes, i);
        if (length > 0) {
            ++wide_;
            i += length;
        } else if (CutOff(bytes, i)) {
            pending_ = std::string(bytes.substr(i)); // may go on in the next piece
            break;
        } else {
            ++bad_;
            ++i;
        }
    }
}

TextEncoding EncodingCensus::Verdict() const {
    const std::size_t bad = bad_ + pending_.size(); // a character the file ends in the middle of
    return bad > wide_ ? TextEncoding::Windows1252 : TextEncoding::Utf8;
}

void Utf16Decoder::Decode(std::string_view bytes, std::string& out) {
    std::string joined;
    if (!carry_.empty()) {
        joined = carry_ + std::string(bytes);
        bytes = joined;
        carry_.clear();
    }
    std::size_t i = 0;
    for (; i + 1 < bytes.size(); i += 2) {
        const unsigned unit = bigEndian_ ? Byte(bytes, i) << 8 | Byte(bytes, i + 1)
                                         : Byte(bytes, i + 1) << 8 | Byte(bytes, i);
        if (highHalf_ != 0) {
            const unsigned high = highHalf_;
            highHalf_ = 0;
            if (unit >= 0xDC00 && unit <= 0xDFFF) {
                PutUtf8(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00), out);
                continue;
            }
            out += kNotText; // a high surrogate without its low one
        }
        if (unit >= 0xD800 && unit <= 0xDBFF)
            highHalf_ = unit;
        else if (unit >= 0xDC00 && unit <= 0xDFFF)
            out += kNotText;
        else
            PutUtf8(unit, out);
    }
    carry_ = std::string(bytes.substr(i));
}

void Utf16Decoder::Finish(std::string& out) {
    if (highHalf_ != 0 || !carry_.empty())
        out += kNotText;
    highHalf_ = 0;
    carry_.clear();
}

} // namespace rainfold::cli
