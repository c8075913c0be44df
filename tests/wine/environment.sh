# What every Windows program of the tests runs in; sourced with STATE set to an absolute folder.
# The prefix is copied from one in the user's cache that is made once; several programs at a time
# have a slot each, so that no two share a registry.

umask 022
WINE=/usr/lib/wine/wine64                        # the loader itself, not the shell wrapper
CACHE=${TESMARK_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tesmark}/wine
BASE=$CACHE/$(dpkg-query -W -f '${Version}' wine64)

export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
unset LANG LANGUAGE LC_ALL LC_CTYPE LC_MESSAGES DISPLAY
unset http_proxy https_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY all_proxy
export LOCPATH="$CACHE/locale"                   # compiled by us: needs no rights
export TZ=CST-8                                  # not Asia/Shanghai, which msvcrt can't read
export FONTCONFIG_FILE="$CACHE/fonts.conf"       # dialogs must not change with the machine's fonts

# use_slot FOLDER: what follows runs in the prefix of that folder, with code page 936.
use_slot() {
    export WINEPREFIX="$1/prefix" HOME="$1/home" LC_ALL=zh_CN.UTF-8
}

make_locale_and_fonts() {
    mkdir -p "$CACHE/fonts" "$LOCPATH"
    [ -d "$LOCPATH/zh_CN.UTF-8" ] || localedef -i zh_CN -f UTF-8 "$LOCPATH/zh_CN.UTF-8" || return
    ln -sf /usr/share/fonts/truetype/wqy/wqy-microhei.ttc "$CACHE/fonts/"
    cat >"$FONTCONFIG_FILE.new" <<END
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>$CACHE/fonts</dir><cachedir>$CACHE/fontcache</cachedir></fontconfig>
END
    mv "$FONTCONFIG_FILE.new" "$FONTCONFIG_FILE"
}

# Twelve seconds, once for each version of Wine.
make_base() {
    [ -f "$BASE/done" ] && return
    echo "Making a Wine prefix, once for this machine" >&2
    rm -rf "$BASE"
    mkdir -p "$BASE/home"
    make_locale_and_fonts || return
    (
        use_slot "$BASE"
        "$WINE" wineboot.exe -i &&
            # Dialogs need neither a display nor a window manager.
            "$WINE" reg.exe add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f &&
            "$WINE" reg.exe add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f &&
            "$WINE" reg.exe add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f
        result=$?
        wineserver -w
        exit $result
    ) </dev/null >"$BASE/log" 2>&1 8>&- 9>&- || { tail -n 5 "$BASE/log" >&2; return 1; }
    touch "$BASE/done"
}

# make_slot FOLDER: a copy of the base. Files are shared by hard links where they can be, but for
# those that Wine writes.
make_slot() {
    [ -f "$1/done" ] && [ "$(cat "$1/done")" = "$BASE" ] && return
    mkdir -p "$CACHE"
    (
        flock 8
        make_base
    ) 8>"$CACHE/lock" || return
    rm -rf "$1/prefix" "$1/done"
    mkdir -p "$1/home"
    cp -al "$BASE/prefix" "$1/prefix" 2>/dev/null || {
        rm -rf "$1/prefix"
        cp -a "$BASE/prefix" "$1/prefix"
    }
    for file in "$1"/prefix/*.reg; do
        cp "$file" "$file.own" && mv "$file.own" "$file"
    done
    echo "$BASE" >"$1/done"
}
