#include "csv_reader.h"

#include "code_page.h"

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

} // namespace

std::string CsvTextAsUtf8(const std::string& bytes) {
    if (IsUtf8(bytes))
        return bytes;
    return Cp1252ToUtf8(bytes);
}

} // namespace rainfold::cli
