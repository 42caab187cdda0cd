#include "format.h"

#include <algorithm>
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
    char e[32];
    const char* const end =
        std::to_chars(e, e + sizeof e, std::fabs(x), std::chars_format::scientific, 14).ptr;
    char digits[15];
    digits[0] = e[0];
    std::copy(e + 2, e + 16, digits + 1);
    int exponent = 0;
    std::from_chars(e[17] == '+' ? e + 18 : e + 17, end, exponent);

    // digits * 10^(exponent - 14) * 10^decimals, rounded to a whole number, halves up: at most
    // 14 digits and a carry, or 15 and the zeros of a positive scale, then padded to one digit
    // more than the decimals. Short enough as a rule to need no allocation.
    const int scale = exponent - 14 + decimals;
    std::string buffer(static_cast<size_t>(std::max(15 + std::max(scale, 0), decimals + 1)), '0');
    char* const kept = &buffer[0];
    size_t size = 0;
    if (scale >= 0) {
        std::copy(digits, digits + 15, kept);
        size = 15 + static_cast<size_t>(scale); // the zeros are there already
    } else {
        const int cut = -scale;
        bool up = false;
        if (cut <= 15) {
            size = static_cast<size_t>(15 - cut);
            std::copy(digits, digits + size, kept);
            up = digits[size] >= '5';
        }
        if (size == 0)
            kept[size++] = '0';
        if (up) {
            size_t i = size;
            while (i > 0 && kept[i - 1] == '9')
                kept[--i] = '0';
            if (i == 0) {
                std::copy_backward(kept, kept + size, kept + size + 1);
                kept[0] = '1';
                ++size;
            } else {
                ++kept[i - 1];
            }
        }
    }
    const size_t places = static_cast<size_t>(decimals);
    if (size <= places) {
        const size_t pad = places + 1 - size;
        std::copy_backward(kept, kept + size, kept + size + pad);
        std::fill(kept, kept + pad, '0');
        size += pad;
    }
    const size_t point = size - places;
    const bool allZero = std::all_of(kept, kept + size, [](char c) { return c == '0'; });
    size_t first = 0;
    while (first + 1 < point && kept[first] == '0')
        ++first;
    std::string text;
    text.reserve(size - first + 2);
    if (x < 0 && !allZero)
        text += '-';
    text.append(kept + first, kept + point);
    if (decimals > 0)
        text.append(1, '.').append(kept + point, kept + size);
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
