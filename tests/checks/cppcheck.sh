#!/usr/bin/env bash
# The library, the examples and the tools are clean under cppcheck.
set -eu
cd "$(dirname "$0")/../.."
folders=()
for folder in text files core preferences bookmarks cookies fonts platform examples tools; do
    [ -d "$folder" ] && folders+=("$folder")
done
# passedByValue, constParameter: published signatures are what they are. unusedFunction cannot be
# asked of a library. useStlAlgorithm: a loop of three lines reads well. missingInclude: Qt's headers are not looked at.
cppcheck --enable=warning,style,performance,portability --inline-suppr --library=qt --std=c++11 \
    --language=c++ --error-exitcode=1 --quiet -j "$(nproc)" -I . \
    --suppress=passedByValue --suppress=constParameter --suppress=constParameterCallback \
    --suppress=unknownMacro --suppress=missingInclude --suppress=useStlAlgorithm \
    "${folders[@]}"
echo "${folders[*]} are clean"
