#!/bin/sh
# Builds the reference manual out of the exported headers, to build/docs/html, and checks the links of all pages.
# A warning of Doxygen's is a failure, as is a link that leads nowhere.
#
#   scripts/docs.sh
#
# What is missing on the machine is installed first.
set -eu
. "$(dirname "$0")/prepare.sh"

need doxygen
cd "$top"
mkdir -p build/docs
if ! doxygen docs/reference/Doxyfile >build/docs/log 2>&1 || [ -s build/docs/log ]; then
    cat build/docs/log >&2
    exit 1
fi

# links PAGE: the targets of its links to files, one a line; examples between ``` are none.
links() {
    awk '/^ *```/ { example = !example; next } !example' "$1" | grep -oE '\]\([^) ]+\)' | sed 's/^](//; s/)$//' |
        grep -vE '^(https?|mailto):'
}
# anchors PAGE: what its headings are called in links.
anchors() {
    awk '/^ *```/ { example = !example; next } !example && /^#+ /' "$1" | sed 's/^#* //' | tr '[:upper:]' '[:lower:]' |
        sed 's/[^a-z0-9 _-]//g; s/ /-/g'
}
broken=0
for page in $(git ls-files --cached --others --exclude-standard '*.md'); do
    for link in $(links "$page"); do
        file=${link%%#*}
        target=$page
        [ -z "$file" ] || target=$(dirname "$page")/$file
        [ ! -d "$target" ] || [ "$link" = "$file" ] || target=$target/README.md
        if [ ! -e "$target" ] || { [ "$link" != "$file" ] && ! anchors "$target" | grep -qxF -- "${link#*#}"; }; then
            echo "$page: $link leads nowhere" >&2
            broken=1
        fi
    done
done
[ "$broken" = 0 ] || exit 1
echo "build/docs/html/index.html"
