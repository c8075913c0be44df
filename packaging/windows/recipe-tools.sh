# What the recipes share. A recipe is a file in recipes/, named as its library, that sets
#   SOURCE    the Debian source package, unpacked into $SOURCE_DIR; none: files of installed packages
#   FOLLOWS   packages whose installed version is part of the result's name
#   NEEDS     recipes before it in the list whose result it builds on, found in $DEPENDENCIES
# and defines build_library, which runs in the empty folder $WORK and installs into $OUT.

# The hardening that Debian builds with. Whoever links the result has to link with
# -fstack-protector-strong too.
THIRDPARTY_CFLAGS="-O2 -fstack-protector-strong -D_FORTIFY_SOURCE=2"
HOST=x86_64-w64-mingw32
JOBS=$(nproc)
TOOLS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# Builds with CMake and installs:  cmake_library OPTION...
# The result doesn't tell in which folder it was built.
# With COMPONENT and TARGET set, that part of the installation and that target alone.
cmake_library() {
    THIRDPARTY_CFLAGS="$THIRDPARTY_CFLAGS -ffile-prefix-map=$WORK=." \
    THIRDPARTY_DEPENDENCIES=$DEPENDENCIES \
    PKG_CONFIG_LIBDIR=$DEPENDENCIES/lib/pkgconfig \
        cmake -G Ninja -S "$SOURCE_DIR" -B "$WORK/build" \
            -DCMAKE_TOOLCHAIN_FILE="$TOOLS/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
            -DCMAKE_C_FLAGS_RELEASE=-DNDEBUG -DCMAKE_CXX_FLAGS_RELEASE=-DNDEBUG \
            -DCMAKE_INSTALL_PREFIX="$OUT" -DCMAKE_INSTALL_LIBDIR:STRING=lib \
            -DBUILD_SHARED_LIBS=OFF "$@"
    cmake --build "$WORK/build" -j "$JOBS" ${TARGET:+--target "$TARGET"}
    cmake --install "$WORK/build" ${COMPONENT:+--component "$COMPONENT"}
}

# Writes a pkg-config file:  pc_file NAME VERSION LIBS CFLAGS [LINE...]
# A LINE is another field, as "Requires.private: zlib".
pc_file() {
    mkdir -p "$OUT/lib/pkgconfig"
    {
        printf 'prefix=%s\nlibdir=${prefix}/lib\nincludedir=${prefix}/include\n\n' "$OUT"
        printf 'Name: %s\nDescription: %s, static\nVersion: %s\n' "$1" "$1" "$2"
        printf 'Libs: -L${libdir} %s\nCflags: -I${includedir} %s\n' "$3" "$4"
        [ $# -eq 4 ] || printf '%s\n' "${@:5}"
    } >"$OUT/lib/pkgconfig/$1.pc"
}

# The number of a Debian version, without epoch and revision.
upstream_version() {
    local version=${1#*:}
    version=${version%-*}
    echo "${version%%+*}"
}

# Keeps the terms of an installed package:  keep_terms LIBRARY PACKAGE
keep_terms() {
    mkdir -p "$OUT/share/licenses/$1"
    cp "/usr/share/doc/$2/copyright" "$OUT/share/licenses/$1/copyright"
}

# What every result has besides: its terms, its version, and pkg-config files that can be moved.
finish_library() {
    local name=$1 file
    if [ -n "$SOURCE" ]; then
        mkdir -p "$OUT/share/licenses/$name"
        cp "$SOURCE_DIR/debian/copyright" "$OUT/share/licenses/$name/"
        for file in "$SOURCE_DIR"/LICENSE* "$SOURCE_DIR"/COPYING* "$SOURCE_DIR"/NOTICE*; do
            [ ! -f "$file" ] || cp "$file" "$OUT/share/licenses/$name/"
        done
    fi
    mkdir -p "$OUT/share/versions"
    if [ -n "$SOURCE" ]; then
        echo "$SOURCE $SOURCE_VERSION" >"$OUT/share/versions/$name"
    else
        for file in $FOLLOWS; do echo "$file ${VERSION[$file]}"; done >"$OUT/share/versions/$name"
    fi
    rm -rf "$OUT/bin" "$OUT/share/man" "$OUT/share/doc" "$OUT/lib/libpng"
    if [ -d "$OUT/lib/pkgconfig" ]; then
        sed -i 's|^prefix=.*|prefix=${pcfiledir}/../..|; s|^\([a-z_]*\)='"$OUT"'|\1=${prefix}|' \
            "$OUT"/lib/pkgconfig/*.pc
    fi
    # Nothing may lead back to a folder that is gone by then.
    if grep -rlF -e "$WORK" -e "$DEPENDENCIES" "$OUT"; then
        echo "These files of $name name the folder in which it was built."
        exit 1
    fi
}
