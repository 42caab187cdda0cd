#include "design_file.h"

#include "code_page.h"
#include "file_access.h"
#include "format.h"

#include <cmath>
#include <string_view>
#include <vector>

namespace rainfold {

namespace {

// ---- writing ----

struct TextItem {
    const std::string* text;
    std::string_view label; // how the engineer knows the field
};

class RecordWriter {
public:
    bool Texts(std::initializer_list<TextItem> items) {
        // Written straight into the file's bytes: a refused text fails the whole file.
        std::string refused;
        for (const TextItem& item : items) {
            if (&item != items.begin())
                bytes_ += ',';
            const auto refuse = [&](const std::string& what) {
                error_ = std::string("the ").append(item.label) + " contains " + what +
                         " a design file cannot hold.";
                return false;
            };
            if (item.text->find('"') != std::string::npos)
                return refuse("a double quote, which");
            // A line break inside a text would end its record early and shift every later one.
            if (item.text->find_first_of("\r\n") != std::string::npos)
                return refuse("a line break, which");
            // A malformed byte is not worth showing; a character the user typed is.
            if (!Utf8ToCp1252(*item.text, text_, refused))
                return refuse(refused.size() > 1 ? "the character \"" + refused + "\", which"
                                                 : "a character that");
            bytes_.append(1, '"').append(text_).append(1, '"');
        }
        bytes_ += "\r\n";
        return true;
    }
    void Number(int value) { bytes_ += std::to_string(value) + "\r\n"; }
    void Empty() { bytes_ += "\r\n"; }
    const std::string& bytes() const { return bytes_; }
    const std::string& error() const { return error_; }

private:
    std::string bytes_;
    std::string text_; // one text in the file's code page
    std::string error_;
};

const char* const kSegmentLetters = "abcdefghij";

// ---- reading ----

struct Item {
    std::string text;
    bool quoted = false;
};

// Splits one record into its items, keeping the texts of the first `keep` only (a line of a
// million commas costs no memory); returns how many items the record has. `unclosed` tells of a
// quoted text with no closing quote.
size_t SplitItems(const std::string& line, size_t keep, std::vector<Item>& items, bool& unclosed) {
    items.clear();
    unclosed = false;
    size_t count = 0;
    size_t i = 0;
    while (true) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
            ++i;
        Item item;
        size_t from = i, to = i;
        if (i < line.size() && line[i] == '"') {
            const size_t close = line.find('"', i + 1);
            unclosed = unclosed || close == std::string::npos;
            from = i + 1;
            to = close == std::string::npos ? line.size() : close;
            item.quoted = true;
            i = close == std::string::npos ? line.size() : close + 1;
            const size_t comma = line.find(',', i);
            i = comma == std::string::npos ? line.size() : comma;
        } else {
            const size_t comma = line.find(',', i);
            to = comma == std::string::npos ? line.size() : comma;
            i = to;
            while (to > from && (line[to - 1] == ' ' || line[to - 1] == '\t'))
                --to;
        }
        if (count++ < keep) {
            item.text.assign(line, from, to - from);
            items.push_back(std::move(item));
        }
        if (i >= line.size())
            break;
        ++i; // past the comma: another item follows, possibly empty
    }
    return count;
}

// An unquoted item that reads as a number is taken as that number: its plain text, as a
// number put into a text field shows it ("0800" -> "800", "1.50" -> "1.5", "+40" -> "40").
// One beyond the range of a double keeps its text.
std::string ItemText(const Item& item) {
    std::string text = Cp1252ToUtf8(item.text);
    if (item.quoted || !IsNumeric(text))
        return text;
    const double number = Val(text);
    return std::isfinite(number) ? PlainNumber(number) : text;
}

class RecordReader {
public:
    RecordReader(const std::string& bytes, std::string fileName)
        : bytes_(bytes), file_(std::move(fileName)) {}

    // Reads the next record, which must have exactly `count` items. The end of the file ends
    // the last record as a line end would.
    bool Record(const std::string& name, size_t count, std::vector<Item>& items) {
        if (next_ >= bytes_.size())
            return Fail("the file ends before record " + name + ".");
        const size_t end = bytes_.find('\n', next_);
        std::string& line = line_;
        line.assign(bytes_, next_, end == std::string::npos ? end : end - next_);
        next_ = end == std::string::npos ? bytes_.size() : end + 1;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        bool unclosed = false;
        const size_t found = SplitItems(line, count, items, unclosed);
        // A text left open, or a comma with nothing after it before the end of the file: the
        // file was cut short.
        const size_t last = line.find_last_not_of(" \t");
        const bool cutAfterComma =
            end == std::string::npos && last != std::string::npos && line[last] == ',';
        if (unclosed || cutAfterComma)
            return Fail("the file ends inside record " + name + ".");
        if (found != count)
            return Fail("record " + name + " has " + std::to_string(found) +
                        (found == 1 ? " item, " : " items, ") + std::to_string(count) +
                        " expected.");
        return true;
    }

    bool Texts(const std::string& name, std::initializer_list<std::string*> fields) {
        std::vector<Item>& items = items_;
        if (!Record(name, fields.size(), items))
            return false;
        size_t k = 0;
        for (std::string* field : fields)
            *field = ItemText(items[k++]);
        return true;
    }

    // A whole number within [low, high]; an empty item reads as 0.
    bool Number(const std::string& name, const std::string& what, int low, int high, int& value) {
        std::vector<Item>& items = items_;
        if (!Record(name, 1, items))
            return false;
        const std::string& text = items[0].text;
        double number = 0;
        if (!IsBlank(text)) {
            if (!IsNumeric(text))
                return Fail("record " + name + " is not a number.");
            number = std::nearbyint(Val(text)); // rounds halves to even, as a whole-number read
        }
        if (number < low || number > high)
            return Fail("record " + name + " has " + what + " " + Cp1252ToUtf8(text) + ", " +
                        std::to_string(low) + " to " + std::to_string(high) + " expected.");
        value = static_cast<int>(number);
        return true;
    }

    bool Fail(const std::string& why) {
        error_ = "Could not open " + file_ + ": " + why;
        return false;
    }
    const std::string& error() const { return error_; }

private:
    const std::string& bytes_;
    std::string file_;
    size_t next_ = 0;         // where the next record starts
    std::string line_;        // the record in hand
    std::vector<Item> items_; // and its items
    std::string error_;
};

} // namespace

FileOutcome SerializeDesign(const DesignRecord& d, std::string& bytes) {
    RecordWriter w;
    bool ok = w.Texts({{&d.txtDescription, "Producer"}}) &&
              w.Texts({{&d.txtLegalID, "Legal Description"}}) &&
              w.Texts({{&d.txtCounty, "County"}, {&d.txtState, "State"}}) &&
              w.Texts({{&d.txtDesigner, "Designer"}, {&d.txtDate, "Date"}}) &&
              w.Texts({{&d.txtSYL, "System Length"},
                       {&d.txtGPM, "System Capacity"},
                       {&d.txtAPPL, "Application Amount"},
                       {&d.txtWetDiam, "Wetted Diameter"}});
    if (ok) {
        w.Number(d.intakeFamilyIndex);
        if (d.intakeFamilyIndex == kCustomizedValuesIndex)
            ok = w.Texts({{&d.txtUk, "K Value"}, {&d.txtUN, "N Value"}});
    }
    if (ok) {
        const int option = d.surfaceOption;
        // With no option ticked record 8 stays empty, which reads back as option 0; the
        // constant fields follow, as they do for option 0.
        const bool ticked = option >= 0 && option <= 3;
        if (ticked)
            w.Number(option);
        else
            w.Empty();
        if (!ticked || option == kConstantSlopeResidue || option == kUserConstant) {
            ok = w.Texts({{&d.txtSurfStore, "Slope or Surface Storage field"},
                          {&d.txtResidue, "Residue field"}});
        } else if (option == kVariableSlopeResidue || option == kUserVariable) {
            for (size_t row = 0; ok && row < 10; ++row) {
                const std::string where = "segment table row " + std::to_string(row + 1);
                ok = w.Texts({{&d.segments[row].col1, where + ", column 1,"},
                              {&d.segments[row].col2, where + ", column 2,"}});
            }
        }
    }
    ok = ok && w.Texts({{&d.txtKS, "Saturated Hydraulic Conductivity"},
                        {&d.txtHW, "Wetting Front Suction Head"},
                        {&d.txtThetaS, "Saturated Water Content"},
                        {&d.txtThetaI, "Initial Water Content"},
                        {&d.txtRzDepth, "Depth of the Root Zone"},
                        {&d.txtOmega, "Linear Variation of Water Content"}});
    if (!ok)
        return {false, w.error()};
    bytes = w.bytes();
    return {};
}

FileOutcome ParseDesign(const std::string& bytes, const std::string& fileName,
                        DesignRecord& design) {
    RecordReader r(bytes, fileName);
    DesignRecord d = design; // filled completely before it replaces the caller's design
    bool ok = r.Texts("1", {&d.txtDescription}) && r.Texts("2", {&d.txtLegalID}) &&
              r.Texts("3", {&d.txtCounty, &d.txtState}) &&
              r.Texts("4", {&d.txtDesigner, &d.txtDate}) &&
              r.Texts("5", {&d.txtSYL, &d.txtGPM, &d.txtAPPL, &d.txtWetDiam}) &&
              r.Number("6", "intake-family index", -1, kCustomizedValuesIndex, d.intakeFamilyIndex);
    if (ok && d.intakeFamilyIndex == kCustomizedValuesIndex)
        ok = r.Texts("7", {&d.txtUk, &d.txtUN});
    ok = ok && r.Number("8", "surface-storage option", 0, 3, d.surfaceOption);
    if (ok && (d.surfaceOption == kConstantSlopeResidue || d.surfaceOption == kUserConstant)) {
        ok = r.Texts("9", {&d.txtSurfStore, &d.txtResidue});
    } else if (ok) {
        for (size_t row = 0; ok && row < 10; ++row)
            ok = r.Texts(std::string("9") + kSegmentLetters[row],
                         {&d.segments[row].col1, &d.segments[row].col2});
    }
    ok = ok && r.Texts("10", {&d.txtKS, &d.txtHW, &d.txtThetaS, &d.txtThetaI, &d.txtRzDepth,
                              &d.txtOmega});
    if (!ok)
        return {false, r.error()};
    design = std::move(d);
    return {};
}

FileOutcome OpenDesign(const std::string& fileName, DesignRecord& design) {
    std::string bytes;
    const std::string reason = ReadSmallFile(fileName, kDesignFileLimit, bytes);
    if (!reason.empty())
        return {false, "Could not open " + fileName + ": " + reason + "."};
    return ParseDesign(bytes, fileName, design);
}

FileOutcome SaveDesign(const std::string& fileName, const DesignRecord& design) {
    std::string bytes;
    FileOutcome made = SerializeDesign(design, bytes);
    if (!made.ok)
        return {false, "Could not save " + fileName + ": " + made.message};
    const std::string reason = SaveFile(fileName, bytes);
    if (!reason.empty())
        return {false, "Could not save " + fileName + ": " + reason + "."};
    return {};
}

} // namespace rainfold
