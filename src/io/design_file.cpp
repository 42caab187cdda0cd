#include "design_file.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace rainfold {

namespace {

// ---- text encoding: designs hold UTF-8, files hold Latin-1 ----

bool Utf8ToLatin1(const std::string& in, std::string& out) {
    out.clear();
    for (size_t i = 0; i < in.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(in[i]);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if ((c & 0xE0) == 0xC0 && i + 1 < in.size()) {
            const unsigned char c2 = static_cast<unsigned char>(in[i + 1]);
            const unsigned code = ((c & 0x1Fu) << 6) | (c2 & 0x3Fu);
            if ((c2 & 0xC0) != 0x80 || code < 0x80 || code > 0xFF)
                return false;
            out += static_cast<char>(code);
            ++i;
        } else {
            return false;
        }
    }
    return true;
}

std::string Latin1ToUtf8(const std::string& in) {
    std::string out;
    for (char ch : in) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c < 0x80) {
            out += ch;
        } else {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

// ---- writing ----

struct TextItem {
    const std::string* text;
    std::string label; // how the engineer knows the field
};

class RecordWriter {
public:
    bool Texts(std::initializer_list<TextItem> items) {
        std::string line;
        for (const TextItem& item : items) {
            if (!line.empty() || &item != items.begin())
                line += ',';
            std::string latin;
            if (item.text->find('"') != std::string::npos) {
                error_ = "the " + item.label +
                         " contains a double quote, which a design file cannot hold.";
                return false;
            }
            if (!Utf8ToLatin1(*item.text, latin)) {
                error_ =
                    "the " + item.label + " contains a character that a design file cannot hold.";
                return false;
            }
            line += '"' + latin + '"';
        }
        bytes_ += line + "\r\n";
        return true;
    }
    void Number(int value) { bytes_ += std::to_string(value) + "\r\n"; }
    void Empty() { bytes_ += "\r\n"; }
    const std::string& bytes() const { return bytes_; }
    const std::string& error() const { return error_; }

private:
    std::string bytes_;
    std::string error_;
};

const char* const kSegmentLetters = "abcdefghij";

// ---- reading ----

struct Item {
    std::string text;
    bool quoted = false;
};

// Splits one record into its items; `unclosed` tells of a quoted text with no closing quote.
std::vector<Item> SplitItems(const std::string& line, bool& unclosed) {
    std::vector<Item> items;
    unclosed = false;
    size_t i = 0;
    while (true) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
            ++i;
        Item item;
        if (i < line.size() && line[i] == '"') {
            const size_t close = line.find('"', i + 1);
            const size_t end = close == std::string::npos ? line.size() : close;
            unclosed = unclosed || close == std::string::npos;
            item.text = line.substr(i + 1, end - i - 1);
            item.quoted = true;
            i = close == std::string::npos ? line.size() : close + 1;
            const size_t comma = line.find(',', i);
            i = comma == std::string::npos ? line.size() : comma;
        } else {
            const size_t comma = line.find(',', i);
            const size_t end = comma == std::string::npos ? line.size() : comma;
            item.text = line.substr(i, end - i);
            while (!item.text.empty() && (item.text.back() == ' ' || item.text.back() == '\t'))
                item.text.pop_back();
            i = end;
        }
        items.push_back(item);
        if (i >= line.size())
            break;
        ++i; // past the comma: another item follows, possibly empty
    }
    return items;
}

class RecordReader {
public:
    RecordReader(const std::string& bytes, std::string fileName) : file_(std::move(fileName)) {
        size_t start = 0;
        while (start < bytes.size()) {
            size_t end = bytes.find('\n', start);
            std::string line =
                bytes.substr(start, end == std::string::npos ? std::string::npos : end - start);
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            lines_.push_back(line);
            terminated_.push_back(end != std::string::npos);
            if (end == std::string::npos)
                break;
            start = end + 1;
        }
    }

    // Reads the next record, which must have exactly `count` items.
    bool Record(const std::string& name, size_t count, std::vector<Item>& items) {
        if (next_ >= lines_.size())
            return Fail("the file ends before record " + name + ".");
        bool unclosed = false;
        items = SplitItems(lines_[next_], unclosed);
        // A record without its line end, or with a text left open, is a file cut short.
        if (unclosed || !terminated_[next_])
            return Fail("the file ends inside record " + name + ".");
        ++next_;
        if (items.size() != count)
            return Fail("record " + name + " has " + std::to_string(items.size()) + " items, " +
                        std::to_string(count) + " expected.");
        return true;
    }

    bool Texts(const std::string& name, std::initializer_list<std::string*> fields) {
        std::vector<Item> items;
        if (!Record(name, fields.size(), items))
            return false;
        size_t k = 0;
        for (std::string* field : fields)
            *field = Latin1ToUtf8(items[k++].text);
        return true;
    }

    // A whole number within [low, high]; an empty item reads as 0.
    bool Number(const std::string& name, const std::string& what, int low, int high, int& value) {
        std::vector<Item> items;
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
            return Fail("record " + name + " has " + what + " " + text + ", " +
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
    std::string file_;
    std::vector<std::string> lines_;
    std::vector<bool> terminated_; // whether each line ended in a line end
    size_t next_ = 0;
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
    design = d;
    return {};
}

FileOutcome OpenDesign(const std::string& fileName, DesignRecord& design) {
    std::ifstream in(fileName, std::ios::binary);
    if (!in)
        return {false, "Could not open " + fileName + ": the file cannot be read."};
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        return {false, "Could not open " + fileName + ": the file cannot be read."};
    return ParseDesign(bytes, fileName, design);
}

FileOutcome SaveDesign(const std::string& fileName, const DesignRecord& design) {
    std::string bytes;
    FileOutcome made = SerializeDesign(design, bytes);
    if (!made.ok)
        return {false, "Could not save " + fileName + ": " + made.message};

    const auto failure = [&](const std::string& why) {
        return FileOutcome{false, "Could not save " + fileName + ": " + why + "."};
    };
    std::string tempName = fileName + ".XXXXXX";
    std::vector<char> pattern(tempName.begin(), tempName.end());
    pattern.push_back('\0');
    const int fd = mkstemp(pattern.data());
    if (fd < 0)
        return failure(std::strerror(errno));
    tempName = pattern.data();
    fchmod(fd, 0644); // a temporary file starts private; a design file is an ordinary document

    size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        written += static_cast<size_t>(n);
    }
    const int writeErrno = errno;
    const bool complete = written == bytes.size() && fsync(fd) == 0;
    const bool closed = close(fd) == 0;
    if (!complete || !closed) {
        unlink(tempName.c_str());
        return failure(std::strerror(complete ? errno : writeErrno));
    }
    if (std::rename(tempName.c_str(), fileName.c_str()) != 0) {
        const int renameErrno = errno;
        unlink(tempName.c_str());
        return failure(std::strerror(renameErrno));
    }
    return {};
}

} // namespace rainfold
