#pragma once
// Reading comma-separated values the way spreadsheets write them (RFC 4180): fields separated by
// commas, records by line ends (CR LF or LF), a field in double quotes may hold commas, line
// ends and doubled quotes ("" for one ").

#include <string>
#include <vector>

namespace rainfold::cli {

struct CsvRecord {
    int line = 0;                    // line of the file on which the record starts, from 1
    std::vector<std::string> fields; // as written, quotes removed
    std::string error;               // non-empty for a malformed record (fields then unusable)
};

// Every record of the text, blank lines left out. A malformed record (a quote inside an unquoted
// field, text after a closing quote, a quoted field never closed) is returned with its error,
// and reading goes on at the next line.
std::vector<CsvRecord> ReadCsv(const std::string& text);

// The text of a CSV file as UTF-8: a file that is not valid UTF-8 is read as Windows-1252, the
// code page spreadsheets on Windows save CSV files in.
std::string CsvTextAsUtf8(const std::string& bytes);

} // namespace rainfold::cli
