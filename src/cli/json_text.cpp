#include "json_text.h"

#include "format.h"

#include <cmath>

namespace rainfold::cli {

namespace {

std::string Scalar(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void Write(const Json& value, std::string& out) {
    switch (value.type()) {
    case Json::value_t::object: {
        out += '{';
        bool first = true;
        for (const auto& item : value.items()) {
            if (!first)
                out += ',';
            first = false;
            out += Scalar(Json(item.key()));
            out += ':';
            Write(item.value(), out);
        }
        out += '}';
        break;
    }
    case Json::value_t::array: {
        out += '[';
        bool first = true;
        for (const Json& element : value) {
            if (!first)
                out += ',';
            first = false;
            Write(element, out);
        }
        out += ']';
        break;
    }
    case Json::value_t::number_float: {
        const double x = value.get<double>();
        if (!std::isfinite(x)) {
            out += "null";
            break;
        }
        out += ShortestText(x);
        break;
    }
    default:
        out += Scalar(value);
    }
}

} // namespace

Json JsonNumber(const std::optional<double>& value) {
    if (!value || !std::isfinite(*value))
        return nullptr;
    return *value;
}

std::string JsonText(const Json& document) {
    std::string out;
    if (document.is_object() && !document.contains("schemaVersion")) {
        Json stamped;
        stamped["schemaVersion"] = kJsonSchemaVersion;
        for (const auto& item : document.items())
            stamped[item.key()] = item.value();
        Write(stamped, out);
    } else {
        Write(document, out);
    }
    return out;
}

} // namespace rainfold::cli
