#!/usr/bin/env bash
# Checks a Rainfold Debian package: its file list, dependencies from dpkg-shlibdeps, the desktop
# entry, AppStream data, design-file type and icons against their validators, lintian (no errors;
# warnings are printed), and the packaged programs themselves.
#     package_test.sh PACKAGE.deb
#     package_test.sh --build BUILD_FOLDER     (makes the package from that build with CPack first)
set -euo pipefail

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
if [ "${1:-}" = "--build" ]; then
    cpack --config "$2/CPackConfig.cmake" -G DEB -B "$work/out" >"$work/cpack.log" 2>&1 ||
        { cat "$work/cpack.log"; exit 1; }
    deb="$(ls "$work"/out/rainfold_*.deb)"
else
    deb="$1"
fi

faults=0
fault() { echo "FAULT: $*"; faults=$((faults + 1)); }

# --- File list -----------------------------------------------------------------------------
dpkg-deb -c "$deb" | awk '{print $6}' | sed 's|^\./||; s|/$||' | sort >"$work/files"
has() { grep -qxF "$1" "$work/files" || fault "the package lacks $1"; }
has usr/bin/rainfold
has usr/bin/rainfold-cli
has usr/share/mime/packages/rainfold.xml
has usr/share/icons/hicolor/scalable/apps/rainfold.svg
for size in 16 22 24 32 48 64 128 256; do
    has "usr/share/icons/hicolor/${size}x${size}/apps/rainfold.png"
done
has usr/share/man/man1/rainfold.1.gz
has usr/share/man/man1/rainfold-cli.1.gz
has usr/share/doc/rainfold/copyright
has usr/share/doc/rainfold/changelog.gz
while read -r f; do fault "outside /usr: $f"; done < <(grep -v -e '^usr' -e '^\.\?$' "$work/files" || true)
desktop="$(grep -E '^usr/share/applications/[^/]+\.desktop$' "$work/files" || true)"
metainfo="$(grep -E '^usr/share/metainfo/[^/]+\.metainfo\.xml$' "$work/files" || true)"
[ "$(echo "$desktop" | grep -c .)" = 1 ] || fault "not one desktop entry: $desktop"
[ "$(echo "$metainfo" | grep -c .)" = 1 ] || fault "not one AppStream file: $metainfo"

# --- Dependencies: the shared libraries the programs link, as dpkg-shlibdeps finds them ------
depends="$(dpkg-deb -f "$deb" Depends)"
for lib in libc6 libstdc++6 libqt6core6 libqt6widgets6 libqt6charts6 libqt6printsupport6; do
    [[ "$depends" == *"$lib ("* ]] || fault "Depends lacks $lib: $depends"
done

# --- Validators on the unpacked files -------------------------------------------------------
root="$work/root"
dpkg-deb -x "$deb" "$root"
if [ -n "$desktop" ]; then
    desktop-file-validate "$root/$desktop" || fault "desktop-file-validate: $desktop"
    grep -qx 'Exec=rainfold %f' "$root/$desktop" || fault "the desktop entry does not pass the file"
    grep -qx 'Categories=Science;Engineering;' "$root/$desktop" || fault "desktop categories"
    mime="$(sed -n 's/^MimeType=\(.*\);$/\1/p' "$root/$desktop")"
fi
if [ -n "$metainfo" ]; then
    appstreamcli validate --no-net "$root/$metainfo" || fault "appstreamcli: $metainfo"
    id="$(basename "$desktop" .desktop)"
    grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$root/$metainfo" ||
        fault "the AppStream file does not launch $id.desktop"
fi
# The design-file type: a private MIME database built from the package's definition alone.
mkdir -p "$work/mime/packages"
cp "$root/usr/share/mime/packages/rainfold.xml" "$work/mime/packages/"
update-mime-database "$work/mime" >"$work/mime.log" 2>&1 ||
    { cat "$work/mime.log"; fault "update-mime-database refuses rainfold.xml"; }
grep -q ":${mime:-?}:\*\.rfd$" "$work/mime/globs2" ||
    fault "*.rfd is not the desktop entry's type ${mime:-?}"
grep -q "^${mime:-?} text/plain$" "$work/mime/subclasses" || fault "$mime is not text-based"
# The examples and the user guide: every file of the source's folder is in the package, byte for
# byte, and the package's folder holds nothing else.
source="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
same_folder() { # same_folder SOURCE_FOLDER PACKAGED_FOLDER
    diff <(cd "$1" && find . -type f | sort) <(cd "$2" 2>/dev/null && find . -type f | sort) \
        >"$work/folders" || { fault "$2 differs from $1:"; sed 's/^/    /' "$work/folders"; }
    while read -r f; do
        cmp -s "$1/$f" "$2/$f" || fault "$2/$f is not the source's $f"
    done < <(cd "$1" && find . -type f)
}
same_folder "$source/examples" "$root/usr/share/doc/rainfold/examples"
same_folder "$source/docs/guide" "$root/usr/share/rainfold/guide"
# Each PNG icon has the size its folder names.
for png in "$root"/usr/share/icons/hicolor/*x*/apps/rainfold.png; do
    folder="$(basename "$(dirname "$(dirname "$png")")")"
    actual="$(python3 -c 'import struct,sys; d=open(sys.argv[1],"rb").read(24); print("%dx%d" % struct.unpack(">II", d[16:24]))' "$png")"
    [ "$actual" = "$folder" ] || fault "$png is $actual"
done

# --- The packaged programs run from their installed places ----------------------------------
version="$("$root/usr/bin/rainfold" --version)" || fault "rainfold --version fails"
[[ "$version" =~ ^Rainfold\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fault "rainfold --version says '$version'"
out="$(QT_QPA_PLATFORM=offscreen "$root/usr/bin/rainfold-cli" compute \
    "$root/usr/share/doc/rainfold/examples/spray-1300ft-800gpm.rfd" 2>&1)" ||
    fault "rainfold-cli compute of the packaged example fails: $out"
[[ "$out" == *"Weighted Average Percent Runoff"* ]] || fault "rainfold-cli printed: $out"

# --- lintian: errors fail, warnings are shown -------------------------------------------------
lintian --allow-root "$deb" >"$work/lintian" 2>&1 || true
if grep -q '^E: ' "$work/lintian"; then
    fault "lintian reports errors"
fi
cat "$work/lintian"

echo "$(grep -c . "$work/files") paths in $(basename "$deb"); $faults faults"
[ "$faults" = 0 ]
