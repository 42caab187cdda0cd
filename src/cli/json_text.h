#pragma once
// JSON documents of the command line: built with nlohmann-json (keys in insertion order), written
// in the layout the user guide's JSON reference documents.

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace rainfold::cli {

using Json = nlohmann::ordered_json;

// The version of the documented key layout, printed first in every object as "schemaVersion".
// Raised when a key is removed or changes its meaning or unit; adding a key keeps it.
inline constexpr int kJsonSchemaVersion = 1;

// A result value: the number, or null for an element not computed (or not finite).
Json JsonNumber(const std::optional<double>& value);

// One line of compact JSON. An object printed whole starts with "schemaVersion", so every
// document a script reads names its layout. Numbers are the shortest text that reads back as
// the same double ("7.874", "800.0000000000001"); text that is not valid UTF-8 is written with
// replacement characters.
std::string JsonText(const Json& document);

} // namespace rainfold::cli
