// libFuzzer target: any bytes as a CSV inventory of `rainfold-cli batch`, up to just past the size
// limit the reader is given here (1 MiB, rows up to 64 KiB: the reader's own limits scaled down
// so that inputs reach them). Besides the sanitizers' own checks it aborts when
// - reading the file in large pieces and in small ones disagree in any item;
// - a file over the limit is not refused, in one item naming it;
// - an item holds a NUL character or text that is not UTF-8, or a row does not have one cell per
//   column;
// - a row that becomes a design does not save and open again to the same file;
// - a batch output row of one of the first rows holds a NUL or starts a text field with what a
//   spreadsheet would take for a formula.

#include "batch_inputs.h"
#include "batch_rows.h"
#include "inventory_columns.h"
#include "inventory_encoding.h"
#include "inventory_reader.h"

#include "design_file.h"
#include "fuzz_files.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kLimit = std::size_t(1) << 20;
constexpr std::size_t kLongestRow = std::size_t(64) << 10;
constexpr std::size_t kRowsComputed = 3;

[[noreturn]] void Fail(const char* condition, int line) {
    std::fprintf(stderr, "inventory_fuzz.cpp:%d: %s\n", line, condition);
    std::abort();
}
#define Require(condition) ((condition) ? void() : Fail(#condition, __LINE__))

std::vector<rainfold::cli::BatchItem> ReadAll(const std::string& path, std::size_t piece) {
    rainfold::cli::InventoryReader reader(path, kLimit, kLongestRow, piece);
    std::vector<rainfold::cli::BatchItem> items;
    for (rainfold::cli::BatchItem item; reader.Next(item);)
        items.push_back(std::move(item));
    return items;
}

bool Same(const rainfold::cli::BatchItem& a, const rainfold::cli::BatchItem& b) {
    return a.kind == b.kind && a.name == b.name && a.path == b.path && a.cells == b.cells &&
           a.message == b.message;
}

bool Text(const std::string& text) {
    return text.find('\0') == std::string::npos && rainfold::cli::IsUtf8(text);
}

// The text fields of a CSV output row (name, status, message, family): none may start as a
// formula would, and none holds a NUL.
void RequireSafeCsv(const std::string& line) {
    Require(line.find('\0') == std::string::npos && !line.empty() && line.back() == '\n');
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (size_t i = 0; i + 1 < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && quoted && line[i + 1] == '"')
            fields.back() += line[++i];
        else if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            fields.emplace_back();
        else
            fields.back() += c;
    }
    Require(!quoted && fields.size() >= 4);
    for (size_t f = 0; f < 4; ++f)
        Require(fields[f].empty() ||
                std::string("=+-@\t\r").find(fields[f][0]) == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace rainfold;
    using namespace rainfold::cli;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string& path = FuzzFile(".csv");
    Require(WriteFuzzFile(path, bytes));
    const std::vector<BatchItem> whole = ReadAll(path, 64 << 10);
    // Pieces of a few bytes cut every character and line end somewhere; on a large input, odd
    // pieces of a few thousand bytes keep the run from spending itself on system calls.
    const std::vector<BatchItem> bits =
        ReadAll(path, size <= (16 << 10) ? 1 + size % 5 : 1001 + size % 4093);
    ::unlink(path.c_str());

    Require(whole.size() == bits.size() && !whole.empty());
    for (size_t i = 0; i < whole.size(); ++i)
        Require(Same(whole[i], bits[i]));
    if (size > kLimit) {
        Require(whole.size() == 1 && whole[0].kind == BatchItem::Kind::Failed &&
                whole[0].message == "Could not open " + path + ": File too large.");
        return 0;
    }

    size_t computed = 0;
    for (const BatchItem& item : whole) {
        Require(item.kind != BatchItem::Kind::DesignFile);
        Require(Text(item.name) && Text(item.message));
        if (item.kind != BatchItem::Kind::Record)
            continue;
        Require(item.columns && item.cells.size() == item.columns->columns.size());
        for (const std::string& cell : item.cells)
            Require(Text(cell));

        DesignRecord typed;
        if (RowDesign(item.cells, *item.columns, typed).status)
            continue;
        std::string file;
        if (SerializeDesign(typed, file).ok) {
            // The file holds only what the design's options use (no K and N under a family).
            DesignRecord again;
            std::string rewritten;
            Require(ParseDesign(file, "fuzz.rfd", again).ok);
            Require(SerializeDesign(again, rewritten).ok && rewritten == file);
        }
        if (computed++ < kRowsComputed) {
            const BatchRow row = EvaluateBatchItem(item, false);
            RequireSafeCsv(BatchCsvLine(row));
            Require(BatchJsonLine(row).find('\0') == std::string::npos);
        }
    }
    return 0;
}
