#pragma once
// Reading comma-separated values the way spreadsheets write them (RFC 4180), piece by piece:
// fields separated by commas, records by line ends (CR LF, LF or a CR alone, as old Mac
// spreadsheets save them); a field in double quotes may hold commas, line ends and doubled
// quotes ("" for one ").

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace rainfold::cli {

struct CsvRecord {
    int line = 0;                    // line of the text on which the record starts, from 1
    std::vector<std::string> fields; // as written, quotes removed
    std::string error;               // non-empty for a malformed record (fields then unusable)
    bool tooLong = false;            // longer than the reader keeps (error says so too)
};

class CsvReader {
public:
    // Appends the next piece of the text to its argument; false when there is no more.
    using Source = std::function<bool(std::string& text)>;

    // A record longer than `longest` bytes is read to its end but not kept.
    CsvReader(Source source, std::size_t longest);

    // The next record, blank lines left out; false at the end of the text. A malformed record (a
    // quote inside an unquoted field, text after a closing quote, a quoted field never closed)
    // comes with its error, and reading goes on at the next line.
    bool Next(CsvRecord& record);

private:
    // True when the byte at pos_ + ahead is there, reading more of the text if need be.
    bool Have(std::size_t ahead = 0) { return pos_ + ahead < text_.size() || Fill(ahead); }
    bool Fill(std::size_t ahead);
    bool AtLineEnd() { return !Have() || text_[pos_] == '\n' || text_[pos_] == '\r'; }
    void SkipLineEnd();
    void Keep(std::string& field, char c);

    Source source_;
    std::size_t longest_;
    std::string text_;
    std::size_t pos_ = 0;
    bool ended_ = false;
    int line_ = 1;
    std::size_t kept_ = 0; // bytes of the current record kept so far
};

} // namespace rainfold::cli
