#!/bin/bash
# Builds the Windows program on Debian 12 or 13, from Debian's packages and source packages alone, into build-windows/: the
# installer blanketing-valve-sizing-VERSION-setup.exe and the same files as a portable zip. Qt, SQLite and libcsv are built
# once; each step that is done is not done again, so an interrupted run goes on where it stopped.
# build.sh core builds what needs no Qt alone, and runs its tests under wine.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."

tree=$PWD/build-windows
prefix=$tree/prefix
host=x86_64-w64-mingw32
compiler=$host-gcc-posix
toolchain=$PWD/packaging/windows/toolchain.cmake

# Does a step once: step NAME WHAT COMMAND...
step() {
    local name=$1 what=$2 start=$SECONDS
    shift 2
    [[ -e $tree/done/$name ]] && return
    echo "== $what"
    "$@"
    echo "$((SECONDS - start)) s" >"$tree/done/$name"
    echo "== $what: took $((SECONDS - start)) s"
}

# The sources that packages of this Debian were made from, from the archives that it uses itself: fetch_sources PACKAGE...
# The lists of packages are the script's own: nothing of the system's is changed.
fetch_sources() {
    local apt=$tree/apt package
    mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial" "$tree/sources"
    tools/debian_sources.sh deb-src >"$apt/sources.list"
    local options=(-q -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=- -o "Dir::State::Lists=$apt/lists"
                   -o "Dir::Cache=$apt/cache" -o APT::Sandbox::User=root)
    apt-get "${options[@]}" update
    for package in "$@"; do # one that was interrupted would be taken for unpacked
        rm -rf "$tree/sources/$package"-*/
    done
    (cd "$tree/sources" && apt-get "${options[@]}" source "$@")
}

source_of() {
    echo "$tree"/sources/"$1"-*/
}

build_sqlite() {
    local build=$tree/sqlite source
    source=$(source_of sqlite3)
    mkdir -p "$build"
    (cd "$build" && "$source/configure" --disable-tcl >/dev/null && make -s sqlite3.c sqlite3.h)
    "$compiler" -O2 -c "$build/sqlite3.c" -o "$build/sqlite3.o"
    install -D -m 644 -t "$prefix/include" "$build/sqlite3.h"
    mkdir -p "$prefix/lib"
    "$host-ar" rcs "$prefix/lib/libsqlite3.a" "$build/sqlite3.o"
}

build_csv() {
    local source
    source=$(source_of libcsv)
    install -D -m 644 -t "$prefix/include" "$source/csv.h"
    mkdir -p "$prefix/bin" "$prefix/lib"
    "$compiler" -O2 -shared "$source/libcsv.c" -o "$prefix/bin/libcsv.dll" "-Wl,--out-implib,$prefix/lib/libcsv.dll.a"
}

# Only what the program needs; what Qt itself needs, it brings. As DLLs, so that a user may put another Qt in their place.
build_qt() {
    local multiarch features=() feature nameless="-ffile-prefix-map=$tree=." # no DLL names this directory
    multiarch=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake
    for feature in sql network dbus opengl dynamicgl vulkan xml concurrent tabletevent pkg_config \
                   system_zlib system_pcre2 system_png system_jpeg system_freetype system_harfbuzz; do
        features+=("-DFEATURE_$feature=OFF")
    done
    cmake -G Ninja -S "$(source_of qt6-base)" -B "$tree/qt" -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
          -DCMAKE_C_FLAGS="$nameless" -DCMAKE_CXX_FLAGS="$nameless" \
          -DSIZING_WINDOWS_PREFIX="$prefix" -DCMAKE_INSTALL_PREFIX=/qt -DBUILD_SHARED_LIBS=ON \
          -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$multiarch" -DQt6HostInfo_DIR="$multiarch/Qt6HostInfo" \
          -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DFEATURE_testlib=OFF "${features[@]}"
    cmake --build "$tree/qt"
    cmake --install "$tree/qt" --prefix "$prefix" >/dev/null
}

build_program() {
    cmake --preset windows -DSIZING_WINDOWS_PREFIX="$prefix"
    cmake --build --preset windows
}

# The DLLs that a program or DLL wants and this tree or the compiler has; those of Windows itself are not among them.
wanted_dlls() {
    local name directory
    for name in $("$host-objdump" -p "$1" | sed -n 's/^\s*DLL Name: //p'); do
        for directory in "$prefix/bin" "$(dirname "$("$compiler" -print-libgcc-file-name)")" "/usr/$host/lib"; do
            [[ -e $directory/$name ]] && echo "$directory/$name" && break
        done
    done
    return 0
}

# Everything that is installed, as it is installed.
stage_files() {
    local files=$tree/files found dll
    rm -rf "$files"
    mkdir -p "$files/platforms" "$files/imageformats" "$files/licences"
    cp "$tree"/program/bin/{blanketing-valve-sizing,size_valves,build_capacities}.exe "$tree/program/bin/capacities.mdb" "$files"
    cp "$prefix/plugins/platforms/qwindows.dll" "$files/platforms"
    cp packaging/windows/qt.conf "$files"
    cp "$prefix/plugins/imageformats/qjpeg.dll" "$files/imageformats"
    found=new
    while [[ $found ]]; do
        found=
        for dll in $(find "$files" -name '*.exe' -o -name '*.dll' | while read -r file; do wanted_dlls "$file"; done | sort -u); do
            [[ -e $files/$(basename "$dll") ]] && continue
            cp "$dll" "$files"
            found=new
        done
    done
    find "$files" \( -name '*.exe' -o -name '*.dll' \) -exec "$host-strip" {} +
    cp -r "$tree/program/packaging/user_guide.html" docs/pictures docs/examples "$files"
    rm "$files/pictures/windows.png" # the README's
    mkdir "$files/data"
    cp data/*.csv data/generate_nominal_tables.py "$files/data"
    cp "$tree/program/packaging/data.html" "$files/data/README.html"
    cp -r "$tree/program/bin/verification" "$files"
    cp data/verification/* "$files/verification"
    # Libraries under the LGPL are DLLs: another build of theirs may take their place.
    cp /usr/share/common-licenses/LGPL-3 "$files/licences/LGPL-3.txt"
    cp /usr/share/common-licenses/LGPL-2.1 "$files/licences/LGPL-2.1.txt"
    cp /usr/share/common-licenses/GPL-3 "$files/licences/GPL-3.txt"
    cp "$(source_of qt6-base)/debian/copyright" "$files/licences/Qt.txt"
    cp "$(source_of sqlite3)/debian/copyright" "$files/licences/SQLite.txt"
    cp "$(source_of libcsv)/debian/copyright" "$files/licences/libcsv.txt"
    cp /usr/share/doc/gcc-mingw-w64-base/copyright "$files/licences/compiler-runtime.txt"
    cp /usr/share/doc/mingw-w64-x86-64-dev/copyright "$files/licences/mingw-w64-runtime.txt"
    cp packaging/copyright "$files/licences/program.txt"
    cat >"$files/licences/README.txt" <<SOURCES
The libraries beside the program were built from the source packages of Debian $(</etc/debian_version) (https://sources.debian.org):
$(cd "$tree/sources" && ls -- *.dsc)
Qt and libcsv are under the GNU Lesser General Public License: builds of your own may take the place of their DLLs.
SOURCES
}

make_packages() {
    local version name
    version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    name=$tree/blanketing-valve-sizing-$version
    rm -f "$name"-*
    # What the uninstaller removes: files, then directories from the innermost.
    # shellcheck disable=SC2016 # the $INSTDIR is the installer's
    (cd "$tree/files" && find . -type f ! -name capacities.mdb -printf 'Delete "$INSTDIR\\%P"\n' &&
        find . -mindepth 1 -depth -type d -printf 'RMDir "$INSTDIR\\%P"\n') | sed 's|/|\\|g' >"$tree/removals.nsh"
    makensis -V2 -DVERSION="$version" -DFILES="$tree/files" -DREMOVALS="$tree/removals.nsh" -DOUTPUT="$name-setup.exe" \
             packaging/windows/installer.nsi
    (cd "$tree" && rm -rf portable && mkdir portable && cp -r files "portable/blanketing-valve-sizing-$version" &&
        cd portable && zip -qr9 "$name-portable.zip" .)
    ls -l "$name"-*
}

start=$SECONDS
mkdir -p "$tree/done"
tools/install_packages.sh windows
# Where programs find their DLLs as long as they stand in the build tree. One prefix for all that the build runs.
WINEPATH="$prefix/bin;$(dirname "$("$compiler" -print-libgcc-file-name)");/usr/$host/lib"
export WINEPATH WINEPREFIX=$tree/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
step sources "Fetching the sources of SQLite and libcsv" fetch_sources sqlite3 libcsv
step sqlite "Building SQLite for Windows" build_sqlite
step csv "Building libcsv for Windows" build_csv
if [[ ${1:-} == core ]]; then
    echo "== Building core and tools for Windows"
    cmake --preset windows-core -DSIZING_WINDOWS_PREFIX="$prefix"
    cmake --build --preset windows-core
    echo "== Running their tests under wine"
    wine "$tree/core/bin/sizing_core_test.exe" --gtest_brief=1
    exit
fi
step qt-source "Fetching the source of Qt" fetch_sources qt6-base
step qt "Building Qt for Windows" build_qt

# What changes with the program is done every time.
echo "== Building the program for Windows"
build_program
echo "== Making installer and portable archive"
stage_files
make_packages
echo "== Took $((SECONDS - start)) s; Qt was built in $(<"$tree/done/qt")"
