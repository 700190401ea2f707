# Shared by ./run and ./test: the packages that Debian 12 has to have, and the build. Sourced, not run.

VEXOR_BUILD_PACKAGES=(g++ cmake ninja-build ccache mold qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl-dev
  zlib1g-dev libzstd-dev librapidxml-dev nlohmann-json3-dev libmicrohttpd-dev libgtest-dev libgmock-dev
  breeze-icon-theme fonts-dejavu-core)
# A third more to download, and no need: without it the web control window offers the user's browser.
VEXOR_OPTIONAL_PACKAGES=(qt6-webengine-dev)
VEXOR_SCREEN_PACKAGES=(xvfb openbox)
VEXOR_TEST_PACKAGES=(binutils libcapstone-dev libunicorn-dev binutils-arm-none-eabi
  qemu-system-arm gdb-multiarch python3 srecord llvm-14)
VEXOR_BENCH_PACKAGES=(libbenchmark-dev xdotool highlight source-highlight
  llvm-14-dev clang-14 gcc-arm-none-eabi libnewlib-arm-none-eabi)

say() { printf '%s\n' "$*" >&2; }

# install_missing PACKAGE...: installs those that are not there.
install_missing() {
  if ! command -v dpkg-query > /dev/null || ! command -v apt-get > /dev/null; then
    say "This is not a Debian system. On Debian 12 these packages would have been installed: $*"
    return 0
  fi
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2> /dev/null | grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo > /dev/null; then
      say "Please install as root: apt-get install ${missing[*]}"
      return 1
    fi
    as_root=(sudo)
  fi
  say "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq >&2 &&
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# install_with_options PACKAGE...: these, and the optional ones where they can be had.
install_with_options() {
  install_missing "$@" "${VEXOR_OPTIONAL_PACKAGES[@]}" && return 0
  install_missing "$@" && say "Going on without ${VEXOR_OPTIONAL_PACKAGES[*]}"
}

# build PRESET TARGET...: configures when needed and builds, quietly unless it fails.
build() {
  local preset=$1
  shift
  local dir=build/$preset log
  log=$(mktemp)
  if [ ! -f "$dir/build.ninja" ]; then
    say "Configuring $preset"
    cmake --preset "$preset" > "$log" 2>&1 || { cat "$log" >&2; rm -f "$log"; return 1; }
  fi
  say "Building $preset"
  ninja -C "$dir" "$@" > "$log" 2>&1 || { cat "$log" >&2; rm -f "$log"; return 1; }
  rm -f "$log"
}
