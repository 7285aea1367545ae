# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by scripts/windows: the installer for Windows, and the zip.

# stage_programs FOLDER [--console-only]: all that is installed, in a folder.
stage_programs() {
  local to=$1 from=build/windows-desktop/src/app name
  rm -rf "$to"
  mkdir -p "$to/licences" "$to/samples"
  [ "${2:-}" = --console-only ] && from=build/windows/src/app
  cp "$from"/texturon*.exe "$to"
  cp samples/*.lmt samples/*.ini "$to/samples"
  cp -r docs share/presets "$to"
  cp README.md CHANGELOG.md "$to/docs"
  cp LICENSE "$to/licences/Apache-2.0.txt"
  for name in libcli11-dev libz-mingw-w64-dev mingw-w64-common gcc-mingw-w64-base; do
    cp "/usr/share/doc/$name/copyright" "$to/licences/$name.txt"
  done
  if [ "${2:-}" = --console-only ]; then
    cp packaging/windows/licence-console.txt "$to/licences/LICENCE.txt"
  else
    cp packaging/windows/licence-desktop.txt "$to/licences/LICENCE.txt"
    cp /usr/share/common-licenses/GPL-3 "$to/licences/GPL-3.txt"
    cp /usr/share/common-licenses/LGPL-3 "$to/licences/LGPL-3.txt"
    cp "$(scripts/windows_qt)"/licences/*.txt "$to/licences"
  fi
  chmod -R u=rwX,go=rX "$to"
}

# list_files STAGE INSTALL REMOVE: the installer's commands that write these files, and those that delete no others.
list_files() {
  (
    cd "$1"
    find . -type d -printf '%P\n' | LC_ALL=C sort | while IFS= read -r folder; do
      folder=${folder:+\\${folder//\//\\}}
      printf 'SetOutPath "$INSTDIR%s"\n' "$folder"
      find ".${folder//\\//}" -maxdepth 1 -type f -printf '%p\n' | LC_ALL=C sort | sed "s|.*|File \"$PWD/&\"|; s|/\./|/|g"
    done
  ) >"$2"
  (
    cd "$1"
    find . -type f -printf '%P\n' | LC_ALL=C sort | sed 's|/|\\|g; s|.*|Delete "$INSTDIR\\&"|'
    find . -mindepth 1 -type d -printf '%P\n' | LC_ALL=C sort -r | sed 's|/|\\|g; s|.*|RMDir "$INSTDIR\\&"|'
  ) >"$3"
}

# registry: what the system of Wine holds of the program.
registry() { grep -i texturon "$WINEPREFIX"/*.reg || true; }

# try_folder FOLDER [--console-only]: the main jobs with what is there.
try_folder() {
  local out=$WINEPREFIX/tried
  rm -rf "$out"
  mkdir "$out"
  "$wine" "$1/texturon.exe" --version
  "$wine" "$1/texturon.exe" analyze "Z:$1/samples/ground.lmt" >"$out/analysis.txt"
  grep -E '^ *R[az] ' "$out/analysis.txt" || { echo "The installed program does not analyse." >&2; exit 1; }
  [ "${2:-}" = --console-only ] && return
  xvfb-run -a "$wine" "$1/texturon-desktop.exe" --report "Z:$1/samples/ground.lmt" -o "Z:$out/report.pdf"
  pdftotext "$out/report.pdf" - | grep -q Rz || { echo "The installed program writes no report." >&2; exit 1; }
}

# make_installer [--console-only]
make_installer() {
  local packages=build/packages work=build/windows-installer desktop=(-DDESKTOP) suffix=""
  need_packages "${windows_installer_packages[@]}" "${windows_test_packages[@]}"
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
  if [ "${1:-}" = --console-only ]; then
    desktop=()
    suffix=-console
    build_console
  else
    need_packages "${windows_try_packages[@]}"
    build_desktop
  fi
  local name=texturon-$version-windows$suffix
  rm -rf "$work"
  mkdir -p "$packages" "$work"
  stage_programs "$work/$name" "$@"
  list_files "$work/$name" "$work/files.nsh" "$work/unfiles.nsh"
  find "$work/$name" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
  rm -f "$packages/$name.zip"
  (cd "$work" && find "$name" | LC_ALL=C sort | TZ=UTC zip -q -X -9 -@ "$OLDPWD/$packages/$name.zip")
  makensis -V2 -WX -INPUTCHARSET UTF8 -NOCD "${desktop[@]}" -DNAME=Texturon -DVERSION="$version" -DSTAGE="$PWD/$work/$name" \
    -DFILES="$PWD/$work/files.nsh" -DUNFILES="$PWD/$work/unfiles.nsh" -DOUTPUT="$PWD/$packages/$name-setup.exe" \
    -DICON="$(find "$PWD"/build/windows*/src/app/windows -name texturon.ico | head -1)" \
    -DSIZE="$(du -sk "$work/$name" | cut -f1)" \
    '-DUNINSTALL_KEY=Software\Microsoft\Windows\CurrentVersion\Uninstall\Texturon' packaging/windows/installer.nsi
  try_installer "$packages/$name" "$@"
  ls -l "$packages/$name"*
}

# try_installer NAME [--console-only]: the zip where it was unpacked; the installer silently, and the removal.
try_installer() {
  local work=$PWD/build/windows-installer package
  package=$(realpath "$1-setup.exe")
  start_wine build/windows-installer/wine
  end_wine
  (cd "$WINEPREFIX" && find drive_c | LC_ALL=C sort) >"$work/before.txt"
  registry >"$work/before.reg"
  mkdir "$work/unpacked"
  python3 -m zipfile -e "$1.zip" "$work/unpacked"
  try_folder "$work/unpacked/$(basename "$1")" "${@:2}"
  "$wine" "$package" /S
  local installed="$WINEPREFIX/drive_c/Program Files/Texturon"
  diff -r "$work/$(basename "$1")" "$installed" | grep -v 'Only in .*: uninstall.exe$' && {
    echo "The installer did not write what it should." >&2
    exit 1
  }
  try_folder "$installed" "${@:2}"
  "$wine" "$package" /S  # over itself
  "$wine" "$installed/uninstall.exe" /S /PURGE
  end_wine
  rm -rf "$WINEPREFIX/tried"
  (cd "$WINEPREFIX" && find drive_c | grep -vE '/(Temp|temp)/|/fontconfig' | LC_ALL=C sort) >"$work/after.txt"
  registry >"$work/after.reg"
  if ! diff <(grep -vE '/(Temp|temp)/|/fontconfig' "$work/before.txt") "$work/after.txt" ||
    ! diff "$work/before.reg" "$work/after.reg"; then
    echo "The uninstaller left something." >&2
    exit 1
  fi
  echo "Installed, run, installed again and removed: nothing is left."
}
