# shellcheck shell=bash disable=SC2034
# Sourced by every script that builds: the Debian packages that the project needs, and how to install and build.

# To build the game and to run it on a display.
game_packages=(
  g++ cmake ninja-build pkg-config
  libsdl2-dev libsdl2-image-dev libsdl2-ttf-dev libsdl2-mixer-dev
  libgl1 libgl1-mesa-dri
)
# To play it without one, by script.
virtual_display_packages=(xvfb xdotool python3 python3-pil)
# To build and run the tests besides.
test_packages=(
  libgtest-dev python3-fonttools iproute2
  dpkg-dev file lintian desktop-file-utils appstream man-db  # to check the package
)
# To build the game for Windows and to pack that.
windows_packages=(
  g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 cmake ninja-build pkg-config dpkg-dev zip
  libsdl2-dev libsdl2-image-dev libsdl2-ttf-dev libsdl2-mixer-dev  # their sources' versions are built
)
# To play it there.
wine_packages=(wine64)
# To look through the sources.
analysis_packages=(clang-format clang-tidy cppcheck git)
# To measure.
bench_packages=(libbenchmark-dev)
# To fuzz.
fuzz_packages=(clang libclang-rt-14-dev)

# missing_packages PACKAGE...: prints those that are not installed.
missing_packages() {
  local installed package
  installed=" $(dpkg-query -W -f='${db:Status-Status}:${Package} ' "$@" 2>/dev/null || true)"  # fails for unknown ones
  for package in "$@"; do
    [[ $installed == *" installed:$package "* ]] || printf '%s\n' "$package"
  done
}

# install_packages PACKAGE...: installs what is missing, as root or through sudo. Says what, and does nothing,
# not even a look at the network, when all is there. Elsewhere than on Debian it only names the packages. Where it
# fails it names what root is to do.
install_packages() {
  if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian system, so nothing is installed. The packages are called there: $*"
    return 0
  fi
  local missing
  mapfile -t missing < <(missing_packages "$@")
  if ((${#missing[@]} == 0)); then return 0; fi

  local as_root=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      name_for_root "${missing[@]}"
      return 1
    fi
    as_root=(sudo)
  fi
  local apt_get=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300)
  echo "Installing ${missing[*]}; this may take minutes"
  if ! "${apt_get[@]}" update || ! "${apt_get[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null; then
    name_for_root "${missing[@]}"
    return 1
  fi
}

# name_for_root PACKAGE...: says how root installs them.
name_for_root() {
  echo "Packages are missing. As root: apt-get update && apt-get install --no-install-recommends $*" >&2
}

# check_writable FOLDER: makes the folder below build/. Says in one line what to do where it, or what is in it, cannot
# be written.
check_writable() {
  if mkdir -p "$1" 2>/dev/null &&
    [[ -z $(find build -maxdepth 1 ! -type l ! -writable -print -quit; find "$1" ! -type l ! -writable -print -quit) ]]; then
    return 0
  fi
  if [[ -w . ]]; then
    echo "$PWD/build cannot be written to by ${USER:-you}. Remove it as root: rm -r '$PWD/build'" >&2
  else
    echo "$PWD cannot be written to by ${USER:-you}. Copy it to a folder of your own and start there." >&2
  fi
  return 1
}

# fresh_where_moved FOLDER: prints CMake's option for a build folder that was made for another place, and has Ninja
# forget what it found out there: it would look there for the headers.
fresh_where_moved() {
  if [[ -e $1/CMakeCache.txt ]] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$1/CMakeCache.txt"; then
    rm -f "$1"/.ninja_{deps,log}
    echo --fresh
  fi
}

# build_preset NAME: configures and builds a CMake preset; quiet when it is up to date.
build_preset() {
  local log
  check_writable "build/$1"
  # shellcheck disable=SC2046
  if ! log=$(cmake --preset "$1" $(fresh_where_moved "build/$1") 2>&1); then
    printf '%s\n' "$log" >&2
    return 1
  fi
  if [[ $(ninja -C "build/$1" -n) == *"no work to do"* ]]; then return 0; fi
  echo "Building build/$1"
  cmake --build --preset "$1"
}
