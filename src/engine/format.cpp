#include "format.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace rainfold {

std::string FormatFixed(double x, int decimals) {
    if (!std::isfinite(x))
        return PlainNumber(x);
    // The number's 15 significant digits and the power of ten of the first one.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(x));
    std::string digits;
    digits += buf[0];
    digits.append(buf + 2, 14);
    const int exponent = std::atoi(std::strchr(buf, 'e') + 1);

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
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.15g", x);
    std::string text = buf;
    for (char& c : text)
        if (c == 'e')
            c = 'E';
    return text;
}

} // namespace rainfold
