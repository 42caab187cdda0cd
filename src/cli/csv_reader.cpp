#include "csv_reader.h"

namespace rainfold::cli {

std::vector<CsvRecord> ReadCsv(const std::string& text) {
    std::vector<CsvRecord> records;
    size_t i = 0;
    int line = 1;
    // A spreadsheet's UTF-8 byte order mark is not part of the first name.
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0)
        i = 3;
    const size_t n = text.size();
    const auto atLineEnd = [&](size_t k) {
        return k >= n || text[k] == '\n' || (text[k] == '\r' && k + 1 < n && text[k + 1] == '\n');
    };
    const auto skipLineEnd = [&] {
        if (i < n && text[i] == '\r')
            ++i;
        if (i < n && text[i] == '\n')
            ++i;
        ++line;
    };

    while (i < n) {
        CsvRecord record;
        record.line = line;
        if (atLineEnd(i)) { // a blank line
            skipLineEnd();
            continue;
        }
        while (true) {
            std::string field;
            if (i < n && text[i] == '"') {
                ++i;
                bool closed = false;
                while (i < n) {
                    if (text[i] == '"') {
                        if (i + 1 < n && text[i + 1] == '"') {
                            field += '"';
                            i += 2;
                            continue;
                        }
                        ++i;
                        closed = true;
                        break;
                    }
                    if (text[i] == '\n')
                        ++line;
                    field += text[i++];
                }
                if (!closed) {
                    record.error = "a quoted field is not closed";
                } else if (i < n && text[i] != ',' && !atLineEnd(i)) {
                    record.error = "text follows a closing quote";
                }
            } else {
                while (i < n && text[i] != ',' && !atLineEnd(i)) {
                    if (text[i] == '"' && record.error.empty())
                        record.error = "a double quote inside a field that does not start with one";
                    field += text[i++];
                }
            }
            if (!record.error.empty()) {
                while (!atLineEnd(i)) // the rest of the line belongs to the broken record
                    ++i;
                break;
            }
            record.fields.push_back(std::move(field));
            if (i < n && text[i] == ',') {
                ++i;
                continue;
            }
            break;
        }
        if (!record.error.empty())
            record.fields.clear();
        skipLineEnd();
        records.push_back(std::move(record));
    }
    return records;
}

namespace {

bool IsUtf8(const std::string& text) {
    for (size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const size_t length = c < 0x80         ? 1
                              : (c >> 5) == 6  ? 2
                              : (c >> 4) == 14 ? 3
                              : (c >> 3) == 30 ? 4
                                               : 0;
        if (length == 0 || i + length > text.size() || (length == 2 && c < 0xC2))
            return false;
        for (size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

void AppendUtf8(unsigned code, std::string& out) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// Windows-1252 bytes 0x80 to 0x9F; the five it leaves undefined keep their Latin-1 meaning.
constexpr unsigned kCp1252High[32] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178,
};

} // namespace

std::string CsvTextAsUtf8(const std::string& bytes) {
    if (IsUtf8(bytes))
        return bytes;
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (char ch : bytes) {
        const unsigned c = static_cast<unsigned char>(ch);
        AppendUtf8(c >= 0x80 && c < 0xA0 ? kCp1252High[c - 0x80] : c, out);
    }
    return out;
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

} // namespace rainfold::cli
