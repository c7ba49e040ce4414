# What Doxygen is shown of our headers.
# - A comment stands for all forms of one name that follow each other: Doxygen wants one for each, so the comment is
#   written again in front of those behind the first.
# - Indented lines of a comment are an example as it stands, and a backslash is one.
# - What is deleted is left out.

# A backslash outside `...` begins a command for Doxygen.
function escaped(text,    parts, count, i, result) {
    count = split(text, parts, "`")
    for (i = 1; i <= count; ++i) {
        if (i % 2 == 1) gsub(/\\/, "\\\\&", parts[i])
        result = result (i > 1 ? "`" : "") parts[i]
    }
    return result
}

function add(text) { comment[lines++] = text }

function example_ends() {
    if (example) add(margin "/// @endcode")
    example = 0
}

# The name that a declaration declares, or nothing.
function name_in(text) {
    sub(/\(.*/, "", text)
    return match(text, /[A-Za-z_0-9~]+$/) ? substr(text, RSTART) : ""
}

function comment_out(    i) { for (i = 0; i < lines; ++i) print comment[i] }

/= delete;/ { next }

# A line of a comment.
/^ *\/\/\/($|[^<])/ {
    if (!inside) lines = 0
    inside = 1
    open = 0
    margin = substr($0, 1, index($0, "/") - 1)
    if ($0 ~ /^ *\/\/\/     ? ? ? ?[^ ]/ && (example || blank)) {
        if (!example) add(margin "/// @code{.unparsed}")
        example = 1
        add($0)
    } else if ($0 ~ /^ *\/\/\/ *$/ && example) {
        held = 1  # the example may go on behind it
    } else {
        example_ends()
        if (held) add(margin "///")
        held = 0
        add(escaped($0))
    }
    if ($0 ~ /^ *\/\/\/     / && held) held = 0
    blank = $0 ~ /^ *\/\/\/ *$/
    next
}

{
    if (inside) {
        example_ends()
        held = blank = 0
        comment_out()
        name = name_in($0)
        inside = 0
        open = 1
    } else if (!open && $0 !~ /^ *($|\/\/|#|}|public:|protected:|private:)/) {
        # Another declaration behind one that has ended.
        if (lines > 0 && name != "" && name_in($0) == name) comment_out()
        else lines = 0
        open = 1
    } else if (!open) {
        lines = 0
    }
    if ($0 ~ /[;{}] *(\/\/.*)?$/) {
        if ($0 ~ /{ *(\/\/.*)?$/) lines = 0
        open = 0
    }
    print
}

END {
    if (inside) {
        example_ends()
        comment_out()
    }
}
