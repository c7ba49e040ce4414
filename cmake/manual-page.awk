# Makes a manual page of what a tool says to --help: its usage, then paragraphs, then options, each indented by two
# with two blanks or more in front of what it does.

function words(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    return text ~ /^[.']/ ? "\\&" text : text
}

/^Usage: / {
    name = $2
    usage = 1
}
usage && /^$/ { usage = 0 }
usage {
    sub(/^(Usage:|  or:)? */, "")
    synopsis = synopsis (synopsis == "" ? "" : "\n.br\n") words($0)
    next
}
# The first sentence is what the tool is listed with.
!summary && NF {
    summary = tolower(substr($0, 1, 1)) substr($0, 2)
    sub(/[.:,]( .*)?$/, "", summary)
    printf ".TH %s 1 \"\" \"Kora %s\" \"Kora System Services\"\n", toupper(name), version
    printf ".SH NAME\n%s \\- %s\n.SH SYNOPSIS\n%s\n.SH DESCRIPTION\n", name, words(summary), synopsis
}
/^$/ {
    if (summary) print ".PP"
    next
}
/^  [^ ]/ {
    match($0, /[^ ]  +/)
    option = RSTART ? substr($0, 3, RSTART - 2) : substr($0, 3)
    print ".TP\n.B " words(option)
    if (RSTART) print words(substr($0, RSTART + RLENGTH))
    next
}
{
    sub(/^ +/, "")
    print words($0)
}
