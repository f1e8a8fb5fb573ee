#!/usr/bin/env bash
# Runs clang-tidy on the sources that changed since the branch left its upstream (or since the
# commit before, where there is nothing to compare with), or on all of them with --all.
# Needs the `dev` preset to be configured and built, for its generated headers.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" = --all ]; then
  changed=$(git ls-files 'src/*.cpp' 'tests/*.cpp' 'tools/*.cpp')
else
  base=$(git merge-base HEAD '@{upstream}' 2>/dev/null || true)
  if [ -z "$base" ] || [ "$base" = "$(git rev-parse HEAD)" ]; then
    base=$(git rev-parse -q --verify HEAD~1 || git rev-parse HEAD)
  fi
  changed=$({ git diff --name-only --diff-filter=d "$base" -- 'src/*.cpp' 'src/*.h' 'tests/*.cpp' \
    'tools/*.cpp'; git ls-files -o --exclude-standard 'src/*.cpp' 'src/*.h'; } | sort -u)
  # A changed header is looked at through the source of the same name.
  changed=$(printf '%s\n' "$changed" | sed -n 's/\.h$/.cpp/p; /\.cpp$/p' | sort -u)
fi

files=()
for file in $changed; do
  [ -f "$file" ] && grep -q "\"file\": .*/$file\"" build/dev/compile_commands.json && files+=("$file")
done
if [ ${#files[@]} -eq 0 ]; then
  echo 'No changed sources.'
  exit 0
fi
echo "${#files[@]} files"
# clang-tidy counts the warnings it suppressed in other people's headers on standard error.
printf '%s\n' "${files[@]}" |
  xargs -P "$(nproc)" -n 1 clang-tidy-19 -p build/dev --quiet 2> >(grep -v 'warnings generated\.$' >&2)
