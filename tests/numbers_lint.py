#!/usr/bin/env python3
"""Fails when a source file converts numbers through the system's locale.

The C library's conversions (strtod, atof, the printf and scanf families with a floating
format) and Qt's number conversions follow, or may follow, the language settings of the desktop:
on a German one "0.45" reads as 0 and 0.31 prints as "0,31". Every number goes through
src/engine/format.cpp instead, which is the one place allowed to convert.

Usage: numbers_lint.py SRC_DIR
"""
import pathlib
import re
import sys

ALLOWED = {"engine/format.cpp"}

RULES = [
    (re.compile(r"\b(strto(d|f|ld)|ato(f|i|l|ll)|sto(d|f|ld)|wcsto(d|f|ld))\s*\("),
     "a C library number reading that follows the locale"),
    (re.compile(r"\b(v?s?n?scanf|fscanf)\s*\("), "a scanf-family reading"),
    (re.compile(r"\b(v?s?n?printf|v?fprintf|asprintf)\s*\([^;]*%[-+ #0-9.*]*[aAeEfFgG]"),
     "a printf-family floating format"),
    (re.compile(r"\bQString::(number|asprintf|vasprintf)\s*\("), "a Qt number text"),
    (re.compile(r"\.(toDouble|toFloat)\s*\("), "a Qt number reading"),
    (re.compile(r"\bQLocale\b[^;]*\b(toDouble|toFloat|toString\s*\(\s*[-+.\w]*\s*,\s*'[efg]')"),
     "a number converted through a QLocale"),
    (re.compile(r"\bstd::(locale::global|setlocale)\b|\bsetlocale\s*\(|\.imbue\s*\("),
     "a change of the locale"),
    (re.compile(r"\bstd::to_string\s*\(\s*[^)]*\b(double|float|[0-9]+\.[0-9]*)\b"),
     "std::to_string of a floating value"),
]


def main() -> int:
    src = pathlib.Path(sys.argv[1])
    found = []
    for path in sorted(src.rglob("*")):
        if path.suffix not in {".cpp", ".h"}:
            continue
        relative = path.relative_to(src).as_posix()
        if relative in ALLOWED:
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            code = line.split("//", 1)[0]
            for pattern, what in RULES:
                if pattern.search(code):
                    found.append(f"src/{relative}:{number}: {what}: {line.strip()}")
    for line in found:
        print(line)
    if found:
        print(f"{len(found)} locale-dependent number conversion(s); use the routines of "
              "src/engine/format.h")
        return 1
    print("no locale-dependent number conversion in", src)
    return 0


if __name__ == "__main__":
    sys.exit(main())
