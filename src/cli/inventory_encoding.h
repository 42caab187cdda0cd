#pragma once
// The character encodings inventories come in: UTF-8 (with or without a byte order mark),
// Windows-1252 (what spreadsheets on Windows save as plain CSV) and UTF-16 with a byte order mark
// ("Unicode text"). The encoding is decided once per file; a byte that does not fit it spoils only
// the row it stands in.

#include <cstddef>
#include <string>
#include <string_view>

namespace rainfold::cli {

enum class TextEncoding { Unknown, Utf8, Windows1252, Utf16LE, Utf16BE };

// The encoding a byte order mark at the start of a file names, and the mark's length; Unknown
// (and 0) when the file starts with none.
TextEncoding EncodingFromMark(std::string_view start, std::size_t& markLength);

// Tells UTF-8 from Windows-1252 over a file read piece by piece: UTF-8 unless bytes that are not
// UTF-8 outnumber the characters that are UTF-8 beyond plain ASCII. So one stray byte in a UTF-8
// file does not turn every name into mojibake, and a Windows file (whose accented letters are
// almost never valid UTF-8) reads as Windows-1252.
class EncodingCensus {
public:
    void Add(std::string_view bytes);
    TextEncoding Verdict() const;

private:
    std::string pending_; // the start of a character cut off at the end of a piece
    std::size_t wide_ = 0, bad_ = 0;
};

// UTF-16 to UTF-8, piece by piece (a piece may end in the middle of a character). What is not
// UTF-16 (a lone surrogate, an odd byte at the end) becomes the byte 0xFF, never valid in UTF-8,
// so that the row holding it is refused.
class Utf16Decoder {
public:
    explicit Utf16Decoder(bool bigEndian) : bigEndian_(bigEndian) {}
    void Decode(std::string_view bytes, std::string& out);
    void Finish(std::string& out);

private:
    bool bigEndian_;
    std::string carry_;     // an odd byte left from the last piece
    unsigned highHalf_ = 0; // a high surrogate waiting for its low one
};

// True when `text` is wholly UTF-8.
bool IsUtf8(std::string_view text);

// How many bytes the UTF-8 character starting at `text[at]` takes, or 0 when none does there
// (a stray byte, an overlong form, a surrogate, beyond U+10FFFF, or cut off at the end).
std::size_t Utf8Length(std::string_view text, std::size_t at);

} // namespace rainfold::cli
