# SPDX-License-Identifier: Apache-2.0
# Sourced by the other scripts: installs the Debian packages named, where they are missing.

# missing_packages PACKAGE...: those that are not installed, a line each.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || echo "$package"
  done
}

# when_free COMMAND...: a call of the package manager, again and again for ten minutes while another one is at work. Its
# own waiting covers the packages, but neither the lists nor what is fetched.
when_free() {
  local said until=$((SECONDS + 600))
  while ! said=$("$@" 2>&1); do
    if [ "$SECONDS" -ge "$until" ] || ! grep -qE 'Could not get lock|Unable to (acquire|lock)' <<<"$said"; then
      echo "$said" >&2
      return 1
    fi
    sleep 3
  done
}

# need_packages PACKAGE...: installs what is missing; waits for a package manager that is at work.
need_packages() {
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return
  echo "installing: ${missing[*]}"
  local apt=(env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600)
  [ "$(id -u)" -eq 0 ] || apt=(sudo "${apt[@]}")
  if [ -z "${TEXTURON_PACKAGE_LISTS:-}" ]; then
    when_free "${apt[@]}" update
    TEXTURON_PACKAGE_LISTS=new
  fi
  when_free "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
}

program_packages=(g++ cmake ninja-build libcli11-dev zlib1g-dev)
desktop_packages=(qt6-base-dev libqcustomplot-dev)
test_packages=(libgtest-dev nlohmann-json3-dev locales xvfb xauth)
python_packages=(pybind11-dev python3-dev python3-numpy)
python_test_packages=(python3-pytest python3-hypothesis python3-scipy python3-pandas python3-matplotlib mypy)
python_build_packages=(python3-build python3-setuptools python3-wheel python3-pip python3-venv)
fuzz_packages=(clang libclang-rt-14-dev)
soak_packages=(python3)
windows_packages=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev librsvg2-bin icoutils)
windows_desktop_packages=(qt6-base-dev qt6-base-dev-tools libqcustomplot-dev dpkg-dev perl xz-utils)
windows_test_packages=(googletest nlohmann-json3-dev musl-tools python3 wine64)
windows_try_packages=(fonts-dejavu-core fonts-wine poppler-utils python3 wine64 xauth xvfb)  # with a window
windows_installer_packages=(nsis zip)
debian_packages=(debhelper dpkg-dev lintian librsvg2-bin dh-python)
bench_packages=(libbenchmark-dev libfftw3-dev liblapack-dev)
check_packages=(python3-numpy python3-scipy valgrind)  # what scripts/bench --check runs beside
