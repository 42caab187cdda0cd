#include "FileNames.h"

#include <QFile>

namespace rainfold::ui {

namespace {

// The length of the well-formed UTF-8 sequence at `i`, or 0.
size_t Utf8Length(const std::string& s, size_t i) {
    const auto at = [&s](size_t k) { return static_cast<unsigned char>(s[k]); };
    const unsigned char c = at(i);
    size_t n = c < 0x80                 ? 1
               : c >= 0xC2 && c <= 0xDF ? 2
               : c >= 0xE0 && c <= 0xEF ? 3
               : c >= 0xF0 && c <= 0xF4 ? 4
                                        : 0;
    if (n == 0 || i + n > s.size())
        return 0;
    for (size_t k = 1; k < n; ++k)
        if ((at(i + k) & 0xC0) != 0x80)
            return 0;
    // No overlong forms, no surrogates, nothing past U+10FFFF.
    if ((c == 0xE0 && at(i + 1) < 0xA0) || (c == 0xED && at(i + 1) > 0x9F) ||
        (c == 0xF0 && at(i + 1) < 0x90) || (c == 0xF4 && at(i + 1) > 0x8F))
        return 0;
    return n;
}

} // namespace

QString FileNameText(const std::string& bytes) {
    QString name;
    for (size_t i = 0; i < bytes.size();) {
        const size_t n = Utf8Length(bytes, i);
        if (n == 0) {
            name += QChar(char16_t(0xDC00 + static_cast<unsigned char>(bytes[i])));
            ++i;
        } else {
            name += QString::fromUtf8(bytes.data() + i, static_cast<qsizetype>(n));
            i += n;
        }
    }
    return name;
}

std::string FileNameBytes(const QString& name) {
    std::string bytes;
    qsizetype start = 0;
    const auto flush = [&](qsizetype end) {
#ifdef Q_OS_WIN
        bytes += name.mid(start, end - start).toStdString(); // UTF-8, as the file functions take
#else
        bytes += QFile::encodeName(name.mid(start, end - start)).toStdString();
#endif
    };
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t u = name[i].unicode();
        const bool pairedLow = i > 0 && QChar::isHighSurrogate(name[i - 1].unicode());
        if (u >= 0xDC80 && u <= 0xDCFF && !pairedLow) {
            flush(i);
            bytes += static_cast<char>(u - 0xDC00);
            start = i + 1;
        }
    }
    flush(name.size());
    return bytes;
}

} // namespace rainfold::ui
