# What Doxygen is shown of the guides.
# - Headings get the names that links give them: a page is called as its file, a section is "page-section", and README.md
#   is the main page.
# - Links between pages lead to these, and links to headers to what stands in them: [`StrIncName`](../include/kora/Str.h)
#   to the operation, [`Str.h`](...) to the file. A member that only one class has need not be said with its class.
# - What the manual does not hold, sources and folders, is named and not linked.

function page_of(file) {
    sub(/.*\//, "", file)
    sub(/\.md$/, "", file)
    return tolower(file) == "readme" ? "mainpage" : file
}

# What a heading is called in links.
function anchor_of(heading) {
    heading = tolower(heading)
    gsub(/[^a-z0-9 _-]/, "", heading)
    gsub(/ /, "-", heading)
    return heading
}

# Where the members of the headers' classes are.
function read_header(file,    line, class, name) {
    if (file in seen) return
    seen[file] = 1
    while ((getline line < file) > 0) {
        if (line ~ /^(class|struct) [A-Za-z_ ]*[:{]/ || line ~ /^class KORA_API/) {
            class = line
            sub(/ *[:{].*/, "", class)
            sub(/.* /, "", class)
        } else if (line ~ /^};/) {
            class = ""
        } else if (class != "" && line ~ /^    [^\/ ]/) {
            name = line
            sub(/[(=;].*/, "", name)
            sub(/.*[ *&]/, "", name)
            if (name == "") continue
            if (!(name in class_of)) class_of[name] = class
            else if (class_of[name] != class) class_of[name] = ""
        }
    }
    close(file)
}

# Text that is shown as it stands.
function code(text) { return "`" text "`" }

function link(text, target,    file, section, name) {
    section = file = target
    if (target ~ /^(https?|mailto):/) return "[" text "](" target ")"
    sub(/#.*/, "", file)
    section = target ~ /#/ ? substr(target, index(target, "#") + 1) : ""
    if (file == "") return "@ref " page "-" section " \"" text "\""
    if (file ~ /\.md$/ && (file !~ /\// || file ~ /^(\.\.\/|docs\/)?[A-Za-z-]+\.md$/)) {
        gsub(/`/, "", text)
        return "@ref " page_of(file) (section != "" ? "-" section : "") " \"" text "\""
    }
    if (file ~ /include\/kora\/[A-Za-z]+\.h$/) {
        name = text
        gsub(/`/, "", name)
        if (name ~ /\.h$/) {
            sub(/.*\//, "", file)
            return "@ref " file " \"" name "\""
        }
        if (name !~ /^[A-Za-z0-9_:]+(\[\])?$/) return text
        sub(/.*include/, "include", file)
        read_header(file)
        if (name !~ /::/ && class_of[name] != "") return "@ref " class_of[name] "::" name " \"" name "\""
        return "@ref " name " \"" name "\""
    }
    return text ~ /`/ ? text : text " (" code(target) ")"
}

# A percent sign in `...` goes missing in front of a word, unless there are two.
function with_percent(text,    parts, count, i, result) {
    count = split(text, parts, "`")
    for (i = 1; i <= count; ++i) {
        if (i % 2 == 0) gsub(/%[A-Za-z_]/, "%&", parts[i])
        result = result (i > 1 ? "`" : "") parts[i]
    }
    return result
}

BEGIN { page = page_of(ARGV[1]) }

/^ *```/ { fenced = !fenced }

fenced || /^    / { print; next }

/^# / { print $0 " {#" page "}"; next }
/^##+ / {
    heading = $0
    sub(/^#+ /, "", heading)
    print $0 " {#" page "-" anchor_of(heading) "}"
    next
}

{
    rest = $0
    out = ""
    while (match(rest, /!?\[[^][]*(\[\])?[^][]*\]\([^) ]+\)/)) {
        whole = substr(rest, RSTART, RLENGTH)
        out = out substr(rest, 1, RSTART - 1)
        rest = substr(rest, RSTART + RLENGTH)
        if (whole ~ /^!/) {
            out = out whole
        } else {
            split_at = index(whole, "](")
            out = out link(substr(whole, 2, split_at - 2), substr(whole, split_at + 2, length(whole) - split_at - 2))
        }
    }
    print with_percent(out rest)
}
