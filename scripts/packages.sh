# SPDX-License-Identifier: Apache-2.0
# Sourced by the other scripts: installs the Debian packages named, where they are missing.

need_packages() {
  local missing=()
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "installing: ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

program_packages=(g++ cmake ninja-build libcli11-dev)
desktop_packages=(qt6-base-dev libqcustomplot-dev)
test_packages=(libgtest-dev nlohmann-json3-dev locales xvfb xauth)
fuzz_packages=(clang libclang-rt-14-dev)
bench_packages=(libbenchmark-dev libfftw3-dev liblapack-dev)
