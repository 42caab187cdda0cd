#!/usr/bin/env python3
"""Fails when a layer of the program reaches for more than it may.

- src/engine uses the C++ standard library and its own headers only;
- src/cli and src/render include nothing from src/ui and their CMake files name none of it;
- rainfold_render links Qt GUI and no other Qt module, and rainfold-cli's core no Qt at all,
  so that the command line draws without widgets and its core builds wherever C++17 does.

Reads the #include lines and the CMake files. Usage: dependency_lint.py SRC_DIR
"""
import pathlib
import re
import sys

STANDARD = set("""
algorithm any array atomic bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
climits clocale cmath codecvt complex condition_variable csetjmp csignal cstdarg cstddef cstdint
cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem
forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream
iterator limits list locale map memory memory_resource mutex new numeric optional ostream queue
random ratio regex scoped_allocator set shared_mutex sstream stack stdexcept streambuf string
string_view system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set
utility valarray variant vector version
""".split())

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)
LINKS = re.compile(r"target_link_libraries\(\s*(\S+)([^)]*)\)", re.S)


def sources(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in {".cpp", ".h"})


def links(cmake_file, target):
    text = re.sub(r"#.*", "", cmake_file.read_text(encoding="utf-8"))
    items = []
    for name, rest in LINKS.findall(text):
        if name == target:
            items += [i for i in rest.split() if i not in {"PUBLIC", "PRIVATE", "INTERFACE"}]
    return items


def main() -> int:
    src = pathlib.Path(sys.argv[1])
    found = []
    ui_headers = {p.name for p in (src / "ui").rglob("*.h")}

    engine_own = {p.name for p in (src / "engine").glob("*.h")}
    for path in sources(src / "engine"):
        for kind, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if (kind == "<" and name not in STANDARD) or (kind == '"' and name not in engine_own):
                found.append(f"{path.relative_to(src.parent)}: includes {name}: the engine uses "
                             "the standard library and its own headers only")

    for layer in ("cli", "render"):
        for path in sources(src / layer):
            for _, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
                if name.split("/")[0] == "ui" or pathlib.PurePath(name).name in ui_headers:
                    found.append(f"{path.relative_to(src.parent)}: includes {name} from src/ui")
        cmake = src / layer / "CMakeLists.txt"
        if re.search(r"rainfold_ui\b|/ui\b|\bui/", re.sub(r"#.*", "", cmake.read_text("utf-8"))):
            found.append(f"{cmake.relative_to(src.parent)}: names the window's layer src/ui")

    checks = [
        (src / "render" / "CMakeLists.txt", "rainfold_render", {"Qt6::Gui"}, "Qt GUI only"),
        (src / "cli" / "CMakeLists.txt", "rainfold_cli_core", set(), "no Qt"),
    ]
    for cmake, target, allowed, what in checks:
        items = links(cmake, target)
        if not items:
            found.append(f"{cmake.relative_to(src.parent)}: no target_link_libraries({target})")
        for item in items:
            if item.startswith("Qt") and item not in allowed:
                found.append(f"{cmake.relative_to(src.parent)}: {target} links {item}: {what}")

    for line in found:
        print(line)
    if found:
        print(f"{len(found)} dependencies beyond the layer's own")
        return 1
    print("every layer keeps to its dependencies in", src)
    return 0


if __name__ == "__main__":
    sys.exit(main())
