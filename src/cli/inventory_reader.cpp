#include "inventory_reader.h"

#include "csv_reader.h"
#include "inventory_columns.h"
#include "inventory_encoding.h"

#include "code_page.h"
#include "design.h"
#include "file_chunks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace rainfold::cli {

namespace {

std::string Sentence(const std::string& reason) {
    return !reason.empty() && reason.back() == '.' ? reason : reason + ".";
}

} // namespace

struct InventoryReader::State {
    std::string file;
    std::size_t limit, longestRow, piece;
    FileChunks chunks;
    TextEncoding encoding = TextEncoding::Unknown;
    std::size_t markLeft = 0; // bytes of the byte order mark still to drop
    std::unique_ptr<Utf16Decoder> utf16;
    std::unique_ptr<CsvReader> csv;
    std::shared_ptr<InventoryColumns> header;
    enum { kStart, kRows, kDone } phase = kStart;
    std::size_t given = 0; // items given after the header
    std::string readError;
    std::string raw;

    // The encoding of the file: its byte order mark, or a look over all of it. "" or why the
    // file cannot be read.
    std::string Decide() {
        FileChunks look;
        if (std::string reason = look.Open(file, limit); !reason.empty())
            return reason;
        std::string start;
        bool more = true;
        while (more && start.size() < 3)
            more = look.Next(start, piece);
        encoding = EncodingFromMark(start, markLeft);
        if (encoding != TextEncoding::Unknown)
            return "";
        EncodingCensus census;
        census.Add(start);
        while (more) {
            raw.clear();
            more = look.Next(raw, piece);
            census.Add(raw);
        }
        encoding = census.Verdict();
        return look.error();
    }

    // The next piece of the text for the CSV reader, as UTF-8 (or Windows-1252, converted a
    // field at a time).
    bool Source(std::string& text) {
        raw.clear();
        const bool more = chunks.Next(raw, piece);
        const std::size_t mark = std::min(markLeft, raw.size());
        markLeft -= mark;
        if (utf16) {
            utf16->Decode(std::string_view(raw).substr(mark), text);
            if (!more)
                utf16->Finish(text);
        } else {
            text.append(raw, mark, std::string::npos);
        }
        if (!more)
            readError = chunks.error();
        return more;
    }

    // The fields as UTF-8; "" or why the record is not text.
    std::string Decode(std::vector<std::string>& fields) const {
        for (std::string& field : fields) {
            if (field.find('\0') != std::string::npos)
                return "the row holds a NUL character";
            if (encoding == TextEncoding::Windows1252)
                field = Cp1252ToUtf8(field);
            else if (!IsUtf8(field))
                return utf16 ? "the row is not valid UTF-16"
                             : "the row is not valid UTF-8 (the rest of the file is)";
        }
        return "";
    }

    bool Start(BatchItem& item);
    bool Row(BatchItem& item);
};

InventoryReader::InventoryReader(std::string file, std::size_t limit, std::size_t longestRow,
                                 std::size_t piece)
    : state_(std::make_unique<State>()) {
    state_->file = std::move(file);
    state_->limit = limit;
    state_->longestRow = longestRow;
    state_->piece = std::max<std::size_t>(piece, 1);
}

InventoryReader::~InventoryReader() = default;

bool InventoryReader::State::Start(BatchItem& item) {
    phase = kDone; // unless the header is sound
    std::string reason = Decide();
    if (reason.empty())
        reason = chunks.Open(file, limit);
    if (!reason.empty()) {
        item = FailedItem(file, "Could not open " + file + ": " + Sentence(reason));
        return true;
    }
    if (encoding == TextEncoding::Utf16LE || encoding == TextEncoding::Utf16BE)
        utf16 = std::make_unique<Utf16Decoder>(encoding == TextEncoding::Utf16BE);
    csv =
        std::make_unique<CsvReader>([this](std::string& text) { return Source(text); }, longestRow);
    CsvRecord record;
    if (!csv->Next(record)) {
        item = FailedItem(file, readError.empty()
                                    ? file + ": no header row"
                                    : "Could not read " + file + ": " + Sentence(readError));
        return true;
    }
    const std::string at = file + ":" + std::to_string(record.line) + ": ";
    std::string error = record.error;
    if (error.empty())
        error = Decode(record.fields);
    header = std::make_shared<InventoryColumns>();
    if (error.empty())
        error = ReadInventoryHeader(record.fields, *header);
    if (!error.empty()) {
        item = FailedItem(file, at + error);
        return true;
    }
    phase = kRows;
    return Row(item);
}

bool InventoryReader::State::Row(BatchItem& item) {
    CsvRecord record;
    while (csv->Next(record)) {
        const std::string where = file + ":" + std::to_string(record.line);
        std::string error = record.error;
        if (record.tooLong) // its design file would be refused the same way
            error = "Could not open " + where + ": " + Sentence(std::strerror(EFBIG));
        else if (!error.empty())
            error = where + ": " + error;
        else if (std::string bad = Decode(record.fields); !bad.empty())
            error = where + ": " + bad;
        else if (std::all_of(record.fields.begin(), record.fields.end(), IsBlank))
            continue; // a spreadsheet's empty row
        else if (record.fields.size() != header->columns.size())
            error = where + ": " + std::to_string(record.fields.size()) + " fields, " +
                    std::to_string(header->columns.size()) + " expected";
        ++given;
        if (!error.empty()) {
            item = FailedItem(where, error);
            return true;
        }
        item = BatchItem();
        item.kind = BatchItem::Kind::Record;
        const std::string* name =
            header->nameAt < record.fields.size() ? &record.fields[header->nameAt] : nullptr;
        item.name = name && !IsBlank(*name) ? *name : where;
        item.path = where;
        item.cells = std::move(record.fields);
        item.columns = header;
        return true;
    }
    phase = kDone;
    if (!readError.empty()) {
        item = FailedItem(file, "Could not read " + file + ": " + Sentence(readError));
        return true;
    }
    if (given == 0) {
        item = FailedItem(file, file + ": no designs below the header row");
        return true;
    }
    return false;
}

bool InventoryReader::Next(BatchItem& item) {
    switch (state_->phase) {
    case State::kStart:
        return state_->Start(item);
    case State::kRows:
        return state_->Row(item);
    default:
        return false;
    }
}

} // namespace rainfold::cli
