#!/bin/sh
# share-comments.sh <header>: the header as doxygen is to see it. A comment in a header is for all
# declarations that follow it without a blank line, such as a getter and its setter. Each gets it, on
# its own line, so that lines keep their numbers.
case $1 in
*.h) ;;
*) exec cat "$1" ;;
esac
exec awk '
    /^ *\/\/\/[^<]/ { if (taken) text = ""; text = text substr($0, index($0, "///") + 3); taken = 0; print; next }
    /^ *$/ || /^ *\/\// || /^[^ ]/ { text = ""; begun = 0; print; next }
    text != "" && !begun && taken { print "/**" text " */ " $0; begun = !/;/; next }
    { taken = 1; begun = !/;/; print }
' "$1"
