#include "json_writer.h"

#include <cmath>
#include <cstdio>

namespace rainfold::cli {

std::string JsonQuote(const std::string& text) {
    std::string out = "\"";
    for (char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (ch == '"' || ch == '\\') {
            out += '\\';
            out += ch;
        } else if (c < 0x20) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\u%04x", c);
            out += buf;
        } else {
            out += ch;
        }
    }
    return out + "\"";
}

void JsonWriter::Separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!first_)
        out_ << ',';
    first_ = false;
}

void JsonWriter::BeginObject() {
    Separate();
    out_ << '{';
    first_ = true;
}

void JsonWriter::EndObject() {
    out_ << '}';
    first_ = false;
}

void JsonWriter::BeginArray(const std::string& key) {
    if (!key.empty())
        Key(key);
    Separate();
    out_ << '[';
    first_ = true;
}

void JsonWriter::EndArray() {
    out_ << ']';
    first_ = false;
}

void JsonWriter::Key(const std::string& key) {
    Separate();
    out_ << JsonQuote(key) << ':';
    afterKey_ = true;
}

void JsonWriter::Number(const std::optional<double>& value) {
    Separate();
    if (!value || !std::isfinite(*value)) {
        out_ << "null";
        return;
    }
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.17g", *value);
    out_ << buf;
}

void JsonWriter::String(const std::string& value) {
    Separate();
    out_ << JsonQuote(value);
}

} // namespace rainfold::cli
