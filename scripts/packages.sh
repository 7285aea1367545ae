# SPDX-License-Identifier: Apache-2.0
# Sourced by the other scripts: installs the Debian packages named, where they are missing.

# missing_packages PACKAGE...: those that are not installed, a line each.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || echo "$package"
  done
}

# need_packages PACKAGE...: installs what is missing; waits for a package manager that is at work.
need_packages() {
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return
  echo "installing: ${missing[*]}"
  local apt=(apt-get -qq -o DPkg::Lock::Timeout=600)
  apt=(env DEBIAN_FRONTEND=noninteractive "${apt[@]}")
  [ "$(id -u)" -eq 0 ] || apt=(sudo "${apt[@]}")
  if [ -z "${TEXTURON_PACKAGE_LISTS:-}" ]; then
    "${apt[@]}" update
    TEXTURON_PACKAGE_LISTS=new
  fi
  "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
}

program_packages=(g++ cmake ninja-build libcli11-dev)
desktop_packages=(qt6-base-dev libqcustomplot-dev)
test_packages=(libgtest-dev nlohmann-json3-dev locales xvfb xauth)
fuzz_packages=(clang libclang-rt-14-dev)
bench_packages=(libbenchmark-dev libfftw3-dev liblapack-dev)
