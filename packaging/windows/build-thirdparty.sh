#!/usr/bin/env bash
# Builds the static libraries that the Windows build links, from Debian's source packages, once.
#   packaging/windows/build-thirdparty.sh                  builds what is missing
#   packaging/windows/build-thirdparty.sh --print-prefix   only tells; 1 if it isn't built yet
# The last line is the folder that CMake takes as THIRDPARTY_PREFIX.
#
# Results are kept in ${TESMARK_CACHE:-${XDG_CACHE_HOME:-~/.cache}/tesmark}/windows, one folder a
# library and one with all of them. Their names hold a hash of the recipe and of the versions of
# the packages it follows: a change makes new folders, and without one there is nothing to do.
set -euo pipefail

case "${1:-}" in
"" | --print-prefix) ;;
-h | --help)
    sed -n '2,5s/^# *//p' "$0"
    exit 0
    ;;
*)
    echo "Unknown option: $1" >&2
    exit 2
    ;;
esac

HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
RECIPES=$HERE/recipes
CACHE=${TESMARK_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tesmark}/windows
[[ $CACHE == /* ]] || CACHE=$PWD/$CACHE
COMPILER=(gcc-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev)

# In the order in which they are built.
LIBRARIES=(openssl jsoncpp giflib headers runtime zlib gcrypt png jpeg curl freetype gd qpdf pugixml
    httplib sqlite)

# What a developer has set for builds of his own is not meant for these.
unset CC CXX AR CFLAGS CXXFLAGS CPPFLAGS LDFLAGS MAKEFLAGS TARGET COMPONENT

. "$HERE/debian-source.sh"

# A recipe sets these and defines build_library (see recipe-tools.sh).
read_recipe() {
    SOURCE='' FOLLOWS='' NEEDS=''
    . "$RECIPES/$1"
}

hash_of() {
    sha256sum | cut -c1-12
}

# The installed versions of the compiler and of what the recipes follow.
declare -A VERSION=()
read_versions() {
    local name package version wanted=("${COMPILER[@]}")
    for name in "${LIBRARIES[@]}"; do
        read_recipe "$name"
        wanted+=($FOLLOWS)
    done
    while read -r package version; do
        [ -z "$version" ] || VERSION[$package]=$version
    done < <(dpkg-query -W -f '${Package} ${Version}\n' "${wanted[@]}" 2>/dev/null)
    for package in "${wanted[@]}"; do
        if [ -z "${VERSION[$package]:-}" ]; then
            echo "$package is not installed: packaging/install-packages.sh build windows" >&2
            exit 1
        fi
    done
}

# All that the libraries are made of and by.
prefix_folder() {
    local package
    echo "$CACHE/$({
        cat "$HERE/recipe-tools.sh" "$HERE/toolchain.cmake" "${LIBRARIES[@]/#/$RECIPES/}"
        for package in "${!VERSION[@]}"; do echo "$package ${VERSION[$package]}"; done | sort
    } | hash_of)"
}

# The same for each library, so that a change builds no more than it has to.
declare -A KEY=()
read_keys() {
    local name package need
    for name in "${LIBRARIES[@]}"; do
        read_recipe "$name"
        KEY[$name]=$({
            cat "$HERE/recipe-tools.sh" "$HERE/toolchain.cmake" "$RECIPES/$name"
            for package in "${COMPILER[@]}" $FOLLOWS; do echo "$package ${VERSION[$package]}"; done
            for need in $NEEDS; do echo "${KEY[$need]}"; done
        } | hash_of)
    done
}

library_folder() {
    echo "$CACHE/libraries/$1-${KEY[$1]}"
}

# Builds one library in folders of its own; only a complete one gets its name.
make_library() {
    local name=$1 final started=$SECONDS log
    final=$(library_folder "$name")
    log=$CACHE/log/$name-${KEY[$name]}.log
    [ ! -d "$final" ] || return 0
    read_recipe "$name"
    printf '   %-9s' "$name"
    WORK=$CACHE/work/$name-${KEY[$name]}
    OUT=$WORK/out
    mkdir -p "$WORK" "$OUT" "$CACHE/libraries" "$CACHE/log"
    if [ -n "$SOURCE" ]; then
        fetch_source "$SOURCE" "$WORK/source" || exit 1
        SOURCE_DIR=$WORK/source
        SOURCE_VERSION=$(cat "$WORK/source.version")
        # The date that OpenSSL keeps in itself is that of the sources.
        SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l "$SOURCE_DIR/debian/changelog" -S Timestamp)
        export SOURCE_DATE_EPOCH
    fi
    # A process of its own, since `set -e` is without effect in what is itself a condition.
    declare -p WORK OUT SOURCE FOLLOWS NEEDS DEPENDENCIES SOURCE_DIR SOURCE_VERSION VERSION \
        >"$WORK/variables" 2>/dev/null || true
    if ! bash -euo pipefail -x -c '. "$0/variables"; . "$1/recipe-tools.sh"; . "$1/recipes/$2"
             cd "$WORK"; build_library; finish_library "$2"' \
             "$WORK" "$HERE" "$name" >"$log" 2>&1 </dev/null; then
        echo "failed; the end of $log:" >&2
        tail -n 30 "$log" >&2
        exit 1
    fi
    mv -T "$OUT" "$final"
    rm -rf "$WORK"
    printf '%-24s%4d s\n' "${SOURCE_VERSION:-as installed}" $((SECONDS - started))
}

# Everything into one folder, as hard links; a complete one gets its name.
make_prefix() {
    local started=$SECONDS name
    echo "Libraries for Windows, built once into $CACHE:"
    read_keys
    rm -rf "$CACHE/work"
    DEPENDENCIES=$CACHE/work/prefix
    mkdir -p "$DEPENDENCIES"
    for name in "${LIBRARIES[@]}"; do
        SOURCE_DIR='' SOURCE_VERSION=''
        make_library "$name"
        cp -al "$(library_folder "$name")/." "$DEPENDENCIES/"
    done
    mv -T "$DEPENDENCIES" "$PREFIX"
    printf '   %-33s%4d s\n' together $((SECONDS - started))
}

read_versions
PREFIX=$(prefix_folder)

if [ "${1:-}" = --print-prefix ]; then
    echo "$PREFIX"
    [ -d "$PREFIX" ]
    exit
fi
if [ ! -d "$PREFIX" ]; then
    mkdir -p "$CACHE"
    exec 9>"$CACHE/lock"
    flock -n 9 || { echo "Another build of the libraries is under way; waiting for it."; flock 9; }
    [ -d "$PREFIX" ] || make_prefix
fi
echo "$PREFIX"
