#!/usr/bin/env bash
# The example in README.md is examples/usage.cpp, line by line; the build compiles that.
set -eu
cd "$(dirname "$0")/../.."
diff <(sed -n '/^```cpp$/,/^```$/p' README.md | sed '1d;$d') examples/usage.cpp
echo "the example stands in README.md"
