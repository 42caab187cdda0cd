#include "design.h"

#include "format.h"

#include <cctype>
#include <string>

namespace rainfold {

namespace {

bool IsBlankChar(char c) {
    return c == ' ' || c == '\t';
}

// Length of the number at the start of s (after position `from`): sign, digits, one decimal
// point, digits, and an exponent only when digits follow it. 0 when no digit is found.
size_t NumberLength(const std::string& s, size_t from) {
    size_t i = from;
    if (i < s.size() && (s[i] == '+' || s[i] == '-'))
        ++i;
    size_t digits = 0;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
        ++i;
        ++digits;
    }
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return 0;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
        size_t j = i + 1;
        if (j < s.size() && (s[j] == '+' || s[j] == '-'))
            ++j;
        size_t expDigits = 0;
        while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) {
            ++j;
            ++expDigits;
        }
        if (expDigits > 0)
            i = j;
    }
    return i - from;
}

} // namespace

double Val(const std::string& text) {
    size_t from = 0;
    while (from < text.size() && IsBlankChar(text[from]))
        ++from;
    const size_t len = NumberLength(text, from);
    double value = 0.0;
    if (len > 0)
        ParseDecimal(std::string_view(text).substr(from, len), value);
    return value;
}

bool IsBlank(const std::string& text) {
    for (char c : text)
        if (!IsBlankChar(c))
            return false;
    return true;
}

bool IsNumeric(const std::string& text) {
    size_t from = 0;
    while (from < text.size() && IsBlankChar(text[from]))
        ++from;
    const size_t len = NumberLength(text, from);
    if (len == 0)
        return false;
    for (size_t i = from + len; i < text.size(); ++i)
        if (!IsBlankChar(text[i]))
            return false;
    return true;
}

bool DesignRecord::operator==(const DesignRecord& o) const {
    return txtDescription == o.txtDescription && txtLegalID == o.txtLegalID &&
           txtCounty == o.txtCounty && txtState == o.txtState && txtDesigner == o.txtDesigner &&
           txtDate == o.txtDate && txtSYL == o.txtSYL && txtGPM == o.txtGPM &&
           txtAPPL == o.txtAPPL && txtWetDiam == o.txtWetDiam &&
           intakeFamilyIndex == o.intakeFamilyIndex && txtUk == o.txtUk && txtUN == o.txtUN &&
           surfaceOption == o.surfaceOption && txtSurfStore == o.txtSurfStore &&
           txtResidue == o.txtResidue && segments == o.segments && txtKS == o.txtKS &&
           txtHW == o.txtHW && txtThetaS == o.txtThetaS && txtThetaI == o.txtThetaI &&
           txtRzDepth == o.txtRzDepth && txtOmega == o.txtOmega && greenAmpt == o.greenAmpt;
}

} // namespace rainfold
