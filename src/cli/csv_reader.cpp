#include "csv_reader.h"

namespace rainfold::cli {

CsvReader::CsvReader(Source source, std::size_t longest)
    : source_(std::move(source)), longest_(longest) {}

bool CsvReader::Fill(std::size_t ahead) {
    while (pos_ + ahead >= text_.size()) {
        if (ended_)
            return false;
        if (pos_ > 0 && pos_ >= text_.size() / 2) { // what was read is done with
            text_.erase(0, pos_);
            pos_ = 0;
        }
        ended_ = !source_(text_);
    }
    return true;
}

void CsvReader::SkipLineEnd() {
    if (Have() && text_[pos_] == '\r') {
        ++pos_;
        if (Have() && text_[pos_] == '\n') // CR LF is one line end
            ++pos_;
    } else if (Have() && text_[pos_] == '\n') {
        ++pos_;
    }
    ++line_;
}

void CsvReader::Keep(std::string& field, char c) {
    if (++kept_ <= longest_)
        field += c;
}

bool CsvReader::Next(CsvRecord& record) {
    while (Have() && AtLineEnd()) // blank lines
        SkipLineEnd();
    if (!Have())
        return false;
    record.line = line_;
    record.fields.clear();
    record.error.clear();
    record.tooLong = false;
    kept_ = 0;
    while (true) {
        std::string field;
        if (Have() && text_[pos_] == '"') {
            ++pos_;
            bool closed = false;
            while (Have()) {
                const char c = text_[pos_++];
                if (c == '"') {
                    if (Have() && text_[pos_] == '"') {
                        Keep(field, '"');
                        ++pos_;
                        continue;
                    }
                    closed = true;
                    break;
                }
                // A line end inside quotes belongs to the field; CR LF counts as one line.
                if (c == '\n' || (c == '\r' && !(Have() && text_[pos_] == '\n')))
                    ++line_;
                Keep(field, c);
            }
            if (!closed)
                record.error = "a quoted field is not closed";
            else if (Have() && text_[pos_] != ',' && !AtLineEnd())
                record.error = "text follows a closing quote";
        } else {
            while (Have() && text_[pos_] != ',' && !AtLineEnd()) {
                if (text_[pos_] == '"' && record.error.empty())
                    record.error = "a double quote inside a field that does not start with one";
                Keep(field, text_[pos_++]);
            }
        }
        if (!record.error.empty()) {
            while (!AtLineEnd()) // the rest of the line belongs to the broken record
                ++pos_;
            break;
        }
        record.fields.push_back(std::move(field));
        if (Have() && text_[pos_] == ',') {
            ++pos_;
            continue;
        }
        break;
    }
    if (kept_ > longest_ && record.error.empty()) {
        record.tooLong = true;
        record.error = "the record is longer than " + std::to_string(longest_) + " bytes";
    }
    if (!record.error.empty())
        record.fields.clear();
    SkipLineEnd();
    return true;
}

} // namespace rainfold::cli
