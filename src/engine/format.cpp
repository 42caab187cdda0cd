#include "format.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace rainfold {

namespace {

// std::to_chars in the requested form; it never looks at the locale.
std::string CharsText(double x, std::chars_format form, int precision) {
    char buf[400];
    const auto result = precision < 0 ? std::to_chars(buf, buf + sizeof buf, x, form)
                                      : std::to_chars(buf, buf + sizeof buf, x, form, precision);
    if (result.ec != std::errc())
        return std::string();
    return std::string(buf, result.ptr);
}

} // namespace

std::string FormatFixed(double x, int decimals) {
    if (!std::isfinite(x))
        return PlainNumber(x);
    // The number's 15 significant digits and the power of ten of the first one.
    const std::string e = CharsText(std::fabs(x), std::chars_format::scientific, 14);
    std::string digits;
    digits += e[0];
    digits.append(e, 2, 14);
    const int exponent = std::stoi(e.substr(e.find('e') + 1));

    // digits * 10^(exponent - 14) * 10^decimals, rounded to a whole number, halves up.
    const int scale = exponent - 14 + decimals;
    std::string kept;
    if (scale >= 0) {
        kept = digits + std::string(static_cast<size_t>(scale), '0');
    } else {
        const int cut = -scale;
        bool up = false;
        if (cut <= 15) {
            kept = digits.substr(0, static_cast<size_t>(15 - cut));
            up = digits[static_cast<size_t>(15 - cut)] >= '5';
        }
        if (kept.empty())
            kept = "0";
        if (up) {
            int i = static_cast<int>(kept.size()) - 1;
            while (i >= 0 && kept[static_cast<size_t>(i)] == '9')
                kept[static_cast<size_t>(i--)] = '0';
            if (i < 0)
                kept.insert(kept.begin(), '1');
            else
                ++kept[static_cast<size_t>(i)];
        }
    }
    if (kept.size() <= static_cast<size_t>(decimals))
        kept.insert(0, static_cast<size_t>(decimals) + 1 - kept.size(), '0');
    std::string whole = kept.substr(0, kept.size() - static_cast<size_t>(decimals));
    const size_t firstNonZero = whole.find_first_not_of('0');
    whole = firstNonZero == std::string::npos ? "0" : whole.substr(firstNonZero);
    std::string text = whole;
    if (decimals > 0)
        text += "." + kept.substr(kept.size() - static_cast<size_t>(decimals));
    const bool allZero = kept.find_first_not_of('0') == std::string::npos;
    if (x < 0 && !allZero)
        text.insert(text.begin(), '-');
    return text;
}

std::string PlainNumber(double x) {
    if (x == 0)
        return "0";
    std::string text = SignificantText(x, 15);
    for (char& c : text)
        if (c == 'e')
            c = 'E';
    return text;
}

std::string ShortestText(double x) {
    return CharsText(x, std::chars_format::general, -1);
}

std::string FixedText(double x, int decimals) {
    return CharsText(x, std::chars_format::fixed, decimals);
}

std::string SignificantText(double x, int digits) {
    return CharsText(x, std::chars_format::general, digits);
}

bool ParseDecimal(std::string_view text, double& value) {
    // std::from_chars takes no leading '+' and reads "inf", "nan" and hexadecimal forms, none of
    // which is a decimal number here: check the form first.
    size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        negative = text[i++] == '-';
    const size_t start = i;
    size_t digits = 0, leadingDigits = 0, firstNonZero = std::string_view::npos;
    bool point = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9') {
            if (c != '0' && firstNonZero == std::string_view::npos)
                firstNonZero = digits;
            ++digits;
            if (!point)
                ++leadingDigits;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (digits == 0)
        return false;
    long long exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        size_t j = i + 1;
        bool negativeExponent = false;
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            negativeExponent = text[j++] == '-';
        const size_t exponentStart = j;
        for (; j < text.size() && text[j] >= '0' && text[j] <= '9'; ++j)
            if (exponent < 100000)
                exponent = exponent * 10 + (text[j] - '0');
        if (j == exponentStart)
            return false;
        if (negativeExponent)
            exponent = -exponent;
        i = j;
    }
    if (i != text.size())
        return false;

    double parsed = 0;
    const auto result = std::from_chars(text.data() + start, text.data() + text.size(), parsed,
                                        std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large or too small for a double: infinity or zero, as the C library reads it.
        const long long magnitude =
            static_cast<long long>(leadingDigits) - static_cast<long long>(firstNonZero) + exponent;
        parsed = firstNonZero != std::string_view::npos && magnitude > 0
                     ? std::numeric_limits<double>::infinity()
                     : 0.0;
    } else if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        return false;
    }
    value = negative ? -parsed : parsed;
    return true;
}

} // namespace rainfold
