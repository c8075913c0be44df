# Fetches Debian's source packages through the machine's own apt, without root and without a trace
# in the system's configuration. Sourced by build-thirdparty.sh.
#
#   fetch_source PACKAGE FOLDER    unpacks the newest version to be had, patches applied, into
#                                  FOLDER, and says the version in FOLDER.version
#
# apt checks what it fetches against the signed indexes. $CACHE/sources keeps it.

# The suites that a source package may come from: those of this release, without backports.
source_suites() {
    local codename
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    echo "$codename $codename-updates $codename-security $codename/updates"
}

# Writes to FOLDER what the machine's entries would be if they also named sources. An entry keeps
# its address, its options and its keys.
write_source_entries() {
    local folder=$1 etc=${APT_ETC:-/etc/apt} files
    mapfile -t files < <(ls "$etc"/sources.list.d/*.sources 2>/dev/null)
    if [ ${#files[@]} -gt 0 ]; then
        # An empty line between files, or the last stanza of one runs into the next.
        awk 'FNR == 1 { print "" } { print }' "${files[@]}" |
            awk -v suites="$(source_suites)" -f "$RECIPES/../deb822-sources.awk" \
                >"$folder/debian.sources"
    fi
    mapfile -t files < <(ls "$etc"/sources.list "$etc"/sources.list.d/*.list 2>/dev/null)
    if [ ${#files[@]} -gt 0 ]; then
        awk -v suites="$(source_suites)" '
            BEGIN { n = split(suites, s); for (i = 1; i <= n; i++) wanted[s[i]] }
            $1 != "deb" { next }
            {
                suite = 3
                if ($2 ~ /^\[/) { while ($(suite - 1) !~ /\]$/ && suite < NF) suite++; suite++ }
                if ($suite in wanted) { sub(/^[ \t]*deb/, "deb-src"); print }
            }' "${files[@]}" >"$folder/debian.list"
    fi
    find "$folder" -type f -empty -delete
}

# apt with lists, caches and entries of its own; what the system hooks to apt is left aside.
private_apt() {
    local program=$1
    shift
    "$program" -c "$CACHE/apt/apt.conf" "$@"
}

# Reads the indexes of sources anew. Once in a run is enough.
update_sources() {
    [ -z "${SOURCES_UPDATED:-}" ] || return 0
    rm -rf "$CACHE/apt/entries"
    mkdir -p "$CACHE/apt/entries" "$CACHE/apt/lists/partial" "$CACHE/apt/cache/archives/partial"
    write_source_entries "$CACHE/apt/entries"
    if [ -z "$(ls "$CACHE/apt/entries")" ]; then
        echo "No entry of this Debian release stands in the machine's apt sources." >&2
        return 1
    fi
    cat >"$CACHE/apt/apt.conf" <<END
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$CACHE/apt/entries";
Dir::State::lists "$CACHE/apt/lists";
Dir::Cache "$CACHE/apt/cache";
APT::Sandbox::User "$(id -un)";
#clear APT::Update::Pre-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
END
    # One entry that can't be had is no reason to stop; a missing package is.
    private_apt apt-get update >"$CACHE/apt/update.log" 2>&1 </dev/null || true
    SOURCES_UPDATED=yes
}

# The versions of a source package that the indexes know, newest first.
source_versions() {
    private_apt apt-cache showsrc --only-source "$1" 2>/dev/null |
        awk '$1 == "Version:" { print $2 }' | sort -u |
        perl -MDpkg::Version -e 'chomp(my @v = <STDIN>);
            print map("$_\n", sort { version_compare($b, $a) } @v)'
}

# The .dsc of a version, without its epoch.
dsc_path() {
    echo "$CACHE/sources/$1_${2#*:}.dsc"
}

fetch_source() {
    local package=$1 folder=$2 version log=$CACHE/apt/$1.log
    update_sources || return 1
    mkdir -p "$CACHE/sources"
    : >"$log"
    # The security pool drops a version when the next one comes, and the index may be a step
    # behind; the main pool still has the version of the last point release.
    for version in $(source_versions "$package"); do
        if (cd "$CACHE/sources" &&
            private_apt apt-get source --download-only --only-source "$package=$version") \
                >>"$log" 2>&1 </dev/null; then
            dpkg-source -x "$(dsc_path "$package" "$version")" "$folder" >>"$log" 2>&1 &&
                echo "$version" >"$folder.version"
            return
        fi
    done
    echo "No source of $package can be had; apt's own words are in $log and" \
         "$CACHE/apt/update.log." >&2
    return 1
}
