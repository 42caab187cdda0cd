#include "csv_text.h"

namespace rainfold {

std::string CsvField(const std::string& text) {
    std::string field = text;
    if (!field.empty() && std::string("=+-@\t\r").find(field.front()) != std::string::npos)
        field.insert(field.begin(), '\'');
    if (field.find_first_of(",\"\r\n") == std::string::npos)
        return field;
    std::string quoted = "\"";
    for (char c : field) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

} // namespace rainfold
