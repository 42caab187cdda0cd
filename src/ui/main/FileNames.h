#pragma once
// File names between the window's texts and the file functions, which take the system's bytes
// (UTF-8 on Windows; on POSIX systems whatever bytes the name has, which need not be UTF-8).

#include <QString>

#include <string>

namespace rainfold::ui {

// A name as the window holds it. Bytes that are not UTF-8 (a name from an older Linux file
// system, "caf\xE9.rfd") are kept as the lone surrogates U+DC80 to U+DCFF, so that FileNameBytes
// gives back exactly the bytes the name came from.
QString FileNameText(const std::string& bytes);

// The bytes of a name the window holds, for the file functions.
std::string FileNameBytes(const QString& name);

} // namespace rainfold::ui
