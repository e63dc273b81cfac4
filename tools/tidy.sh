#!/usr/bin/env bash
# clang-tidy over the sources that a change touches, or over all of them.
#   tools/tidy.sh [REV|--all] [BUILD_FOLDER]    # default: what the last commit changed, build/release
# A changed header is checked through the sources of its folder that include it.
set -euo pipefail
cd "$(dirname "$0")/.."
base=${1:-HEAD~1}
build=${2:-build/release}

if [ "$base" != --all ] && ! git rev-parse --quiet --verify "$base" > /dev/null; then
  echo "clang-tidy: there is no commit $base to compare with"
  exit 0
fi
if [ "$base" = --all ]; then
  git ls-files 'src/*.cpp' 'platform/*.cpp' 'apps/*.cpp' 'interop/*.cpp' > "$build/tidy.list"
else
  git diff --name-only --diff-filter=d "$base" -- 'src/*' 'platform/*' 'apps/*' 'interop/*' |
    while read -r file; do
      case "$file" in
        *.cpp) echo "$file" ;;
        *.h) grep -lF "$(basename "$file")" "$(dirname "$file")"/*.cpp 2>/dev/null || true ;;
      esac
    done | sort -u > "$build/tidy.list"
fi
echo "clang-tidy: $(wc -l < "$build/tidy.list") sources"
xargs -r -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet < "$build/tidy.list" 2> "$build/tidy.log" ||
  { grep -vE 'warnings (generated|suppressed)' "$build/tidy.log" >&2; exit 1; }
