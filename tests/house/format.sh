#!/usr/bin/env bash
# Every source is formatted by .clang-format; says which are not.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
find . \( -name build -o -name .git -o -path ./automation/shim \) -prune -o \
    \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 clang-format-15 --dry-run -Werror
