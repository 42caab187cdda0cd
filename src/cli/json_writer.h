#pragma once
// A minimal JSON writer for the command line's machine-readable output.

#include <optional>
#include <sstream>
#include <string>

namespace rainfold::cli {

class JsonWriter {
public:
    void BeginObject();
    void EndObject();
    void BeginArray(const std::string& key = "");
    void EndArray();
    void Key(const std::string& key);
    void Number(const std::optional<double>& value); // null when empty or not finite
    void String(const std::string& value);
    std::string str() const { return out_.str() + "\n"; }

private:
    void Separate();
    std::ostringstream out_;
    bool first_ = true;
    bool afterKey_ = false;
};

std::string JsonQuote(const std::string& text);

} // namespace rainfold::cli
