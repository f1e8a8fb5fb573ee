#!/usr/bin/env bash
# Installs the Debian 12 packages that building, testing and running MorvoBar needs.
# Quiet and quick when nothing is missing; says what is missing when it may not install.
#
#   script/bootstrap.sh            everything (build, run, tests)
#   script/bootstrap.sh --run      only what building and running needs
set -euo pipefail

build_packages=(
  g++ cmake ninja-build ccache mold pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools
  qcoro-qt6-dev nlohmann-json3-dev libtomlplusplus-dev libsimdjson-dev
  libsecret-1-dev libxcb1-dev libxcb-shape0-dev
  qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-controls
  qml6-module-qtquick-layouts qml6-module-qtquick-templates
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
)
run_packages=(
  python3 qt6-qpa-plugins fonts-noto-cjk fonts-noto-color-emoji dbus dbus-bin
)
# The private desktop of the demonstration and of the window tests.
desktop_packages=(
  xvfb xauth openbox picom trayer xdotool x11-utils x11-xserver-utils hsetroot imagemagick dunst
)
test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev
  clang-19 clang-tidy-19 clang-format-19 libclang-rt-19-dev
  gnome-keyring libsecret-tools python3-dbusmock python3-gi procps jq time
  at-spi2-core gir1.2-atspi-2.0
)

packages=("${build_packages[@]}" "${run_packages[@]}" "${desktop_packages[@]}")
[ "${1:-}" = --run ] || packages+=("${test_packages[@]}")

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

if [ "$(id -u)" -eq 0 ]; then
  become=()
elif command -v sudo >/dev/null && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
  become=(sudo)
else
  printf 'These Debian packages are missing, and this user may not install them:\n  %s\n' "${missing[*]}" >&2
  printf 'Ask an administrator to run:\n  apt-get install %s\n' "${missing[*]}" >&2
  exit 1
fi

printf 'Installing %d packages: %s\n' "${#missing[@]}" "${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
install() {
  "${become[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1
}
# Package lists may be absent or old: refresh them once before giving up.
if ! install; then
  "${become[@]}" apt-get update >>"$log" 2>&1 || true
  if ! install; then
    tail -n 20 "$log" >&2
    printf 'The packages could not be installed.\n' >&2
    exit 1
  fi
fi
