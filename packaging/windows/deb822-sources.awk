# Turns stanzas of apt's *.sources files into stanzas for sources: those that name one of `suites`
# and aren't switched off, with "deb-src" as their type and no suite but the wanted ones.

BEGIN {
    RS = ""
    FS = "\n"
    n = split(suites, list, " ")
    for (i = 1; i <= n; i++) wanted[list[i]]
}

{
    binary = enabled = 1
    kept = other = field = ""
    for (i = 1; i <= NF; i++) {
        if ($i ~ /^#/) continue
        # A line that begins with a blank belongs to the field above it.
        if ($i ~ /^[A-Za-z]/) field = tolower(substr($i, 1, index($i, ":") - 1))
        value = $i
        if ($i !~ /^[ \t]/) sub(/^[^:]*:/, "", value)
        if (field == "types") binary = value ~ /(^|[ \t])deb([ \t]|$)/
        else if (field == "enabled") enabled = tolower(value) !~ /no|false/
        else if (field == "suites") {
            count = split(value, suite, " ")
            for (j = 1; j <= count; j++) if (suite[j] in wanted) kept = kept " " suite[j]
        } else other = other $i "\n"
    }
    if (binary && enabled && kept != "") print "Types: deb-src\nSuites:" kept "\n" other
}
