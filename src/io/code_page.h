#pragma once
// Windows-1252, the Western single-byte code page design files are written in, to and from the
// UTF-8 the program holds its texts in.

#include <string>

namespace rainfold {

// Every byte has a character: the five bytes the code page leaves unassigned (0x81, 0x8D, 0x8F,
// 0x90, 0x9D) read as the control characters of the same number, so any file reads and writes
// back byte for byte.
std::string Cp1252ToUtf8(const std::string& bytes);

// The bytes of a UTF-8 text, or false with the first character the code page does not hold
// (as UTF-8 in `refused`; a malformed sequence is refused byte by byte).
bool Utf8ToCp1252(const std::string& text, std::string& bytes, std::string& refused);

} // namespace rainfold
