#pragma once
// JSON documents of the command line: built with nlohmann-json (keys in insertion order), written
// in the layout the README documents.

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace rainfold::cli {

using Json = nlohmann::ordered_json;

// A result value: the number, or null for an element not computed (or not finite).
Json JsonNumber(const std::optional<double>& value);

// One line of compact JSON. Numbers carry 17 significant digits (the library's own writer would
// shorten them); text that is not valid UTF-8 is written with replacement characters.
std::string JsonText(const Json& document);

} // namespace rainfold::cli
