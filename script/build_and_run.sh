#!/usr/bin/env bash
# Installs what is missing, builds the release preset and starts MorvoBar.
#
#   script/build_and_run.sh                 start the program; on a machine without a display, show
#                                           the main job on a private one instead (see --demo)
#   script/build_and_run.sh --demo [DIR]    show the main job: a real hook event makes the pet
#                                           react; screenshots go to DIR (default build/demo)
#   script/build_and_run.sh WORDS...        run the program with these words, such as
#                                           `connect claude` or `status`
set -euo pipefail
cd "$(dirname "$0")/.."

script/bootstrap.sh --run
cmake --preset release --log-level=WARNING >/dev/null
cmake --build --preset release --target morvobar

program=$PWD/build/release/bin/morvobar
case "${1:-}" in
--demo)
  exec /usr/bin/python3 script/demo.py "$program" "${2:-build/demo}"
  ;;
'')
  if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    printf 'No display here: showing the main job on a private one.\n'
    exec /usr/bin/python3 script/demo.py "$program" build/demo
  fi
  ;;
esac
exec "$program" "$@"
