#pragma once
// Text fields of the CSV files the program writes (batch results, the explorer's grid), made safe
// for the spreadsheets that open them.

#include <string>

namespace rainfold {

// A text field for a CSV file. A text that a spreadsheet would take for a formula (it starts with
// "=", "+", "-", "@", a tab or a carriage return: "=HYPERLINK(...)", "+cmd|...") gets a single
// quote in front, which spreadsheets read as "this is text"; then the field is quoted when it
// holds a comma, a quote or a line end (RFC 4180). Numbers are written as they are, not
// through here.
std::string CsvField(const std::string& text);

} // namespace rainfold
