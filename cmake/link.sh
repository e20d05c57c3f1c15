#!/bin/sh
# The compiler's -wrapper in the link of what ships. GNU's linker keeps every unwinding table, and so each function that
# a table describes. The first link omits the tables of inline functions and templates, which have separate sections.
# Its map lists the functions that are needed, and the second link keeps the tables of these alone.
set -e
case $1 in
    *collect2*) ;;
    *) exec "$@" ;;
esac
for argument; do
    [ "$previous" != -o ] || output=$argument
    previous=$argument
done
trap 'rm -f "$output".first "$output".map "$output".needed "$output".ld' EXIT
script() { i686-w64-mingw32-ld --verbose | sed -n '/^====/,/^====/{/^====/!p}' | sed "$1" > "$output".ld; }

script 's/KEEP(\*(\.eh_frame\*))/KEEP(*(.eh_frame))/'
"$@" -o "$output".first -T "$output".ld -Map="$output".map
awk '/^Linker script and memory map/ { memory = 1 }
    memory && /^ \.text\$/ { sub(/\[.*/, "", $1); print ".eh_frame" substr($1, 6) }' "$output".map |
    sort -u > "$output".needed
script "/KEEP(\*(\.eh_frame\*))/{
    s/.*/KEEP(*(.eh_frame/
    r $output.needed
    a ))
}"
# Its map shows which archives' members are in the library: the release package names their makers and licences.
"$@" -T "$output".ld -Map="${output%.*}.map"
