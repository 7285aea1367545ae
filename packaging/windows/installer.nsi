; SPDX-License-Identifier: Apache-2.0
; The installer for Windows. scripts/windows gives NAME, VERSION, STAGE (the folder that is installed), FILES and UNFILES
; (commands that write and delete what is in it), ICON, OUTPUT, SIZE (in kB), and DESKTOP where that program is in it.
;
; Silent: setup.exe /S [/D=folder]; uninstall.exe /S [/PURGE]. /PURGE also removes what the user who runs it has: settings,
; presets, journals.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
SetDateSave off
RequestExecutionLevel admin
ManifestDPIAware true
ManifestSupportedOS Win10
Name "${NAME}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Texturon"
InstallDirRegKey HKLM "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "Texturon ${VERSION}"

!define CLASSES "Software\Classes"
!define CLASS "Texturon.Profile"
!define PATHS "Software\Microsoft\Windows\CurrentVersion\App Paths"

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinMessages.nsh
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_LICENSE "${STAGE}\licences\LICENCE.txt"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!ifdef DESKTOP
  !define MUI_FINISHPAGE_RUN "$INSTDIR\texturon-desktop.exe"
!endif
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 "ProductName" "Texturon"
VIAddVersionKey /LANG=0 "FileDescription" "Installs Texturon"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "LegalCopyright" "The Texturon developers"

LangString IN_USE ${LANG_ENGLISH} "Texturon is running. Close it and try again."
LangString IN_USE ${LANG_GERMAN} "Texturon läuft gerade. Schließen Sie es und versuchen Sie es noch einmal."
LangString TYPE_NAME ${LANG_ENGLISH} "Measured surface profile"
LangString TYPE_NAME ${LANG_GERMAN} "Gemessenes Oberflächenprofil"
LangString PROGRAMS ${LANG_ENGLISH} "Programs, samples and documents"
LangString PROGRAMS ${LANG_GERMAN} "Programme, Beispiele und Dokumente"
LangString START_MENU ${LANG_ENGLISH} "Start menu"
LangString START_MENU ${LANG_GERMAN} "Startmenü"
LangString FILE_TYPES ${LANG_ENGLISH} "Open profiles with Texturon"
LangString FILE_TYPES ${LANG_GERMAN} "Profile mit Texturon öffnen"

; A program that runs cannot be opened for writing.
!macro REFUSE_WHILE_RUNNING PROGRAM
  ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${PROGRAM}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "$(IN_USE)" /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; Kinds of files that others may have as well are only offered.
!macro OFFER EXTENSION
  WriteRegNone HKLM "${CLASSES}\${EXTENSION}\OpenWithProgids" "${CLASS}"
!macroend
!macro TAKE_BACK EXTENSION
  DeleteRegValue HKLM "${CLASSES}\${EXTENSION}\OpenWithProgids" "${CLASS}"
  DeleteRegKey /ifempty HKLM "${CLASSES}\${EXTENSION}\OpenWithProgids"
  DeleteRegKey /ifempty HKLM "${CLASSES}\${EXTENSION}"
!macroend
!macro TELL_SHELL
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

Function .onInit
  SetShellVarContext all
  SetRegView 64
FunctionEnd

Section "$(PROGRAMS)"
  SectionIn RO
  !insertmacro REFUSE_WHILE_RUNNING texturon.exe
  !insertmacro REFUSE_WHILE_RUNNING texturon-desktop.exe
  ; What an earlier version had and this one has not goes with it.
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
  ${EndIf}
  !include "${FILES}"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\texturon.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Texturon developers"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE}
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
  WriteRegStr HKLM "${PATHS}\texturon.exe" "" "$INSTDIR\texturon.exe"
!ifdef DESKTOP
  WriteRegStr HKLM "${PATHS}\texturon-desktop.exe" "" "$INSTDIR\texturon-desktop.exe"
!endif
SectionEnd

Section "$(START_MENU)"
  CreateDirectory "$SMPROGRAMS\Texturon"
!ifdef DESKTOP
  CreateShortcut "$SMPROGRAMS\Texturon\Texturon.lnk" "$INSTDIR\texturon-desktop.exe"
!endif
  CreateShortcut "$SMPROGRAMS\Texturon\Documentation.lnk" "$INSTDIR\docs"
  CreateShortcut "$SMPROGRAMS\Texturon\Samples.lnk" "$INSTDIR\samples"
SectionEnd

!ifdef DESKTOP
Section "$(FILE_TYPES)"
  WriteRegStr HKLM "${CLASSES}\${CLASS}" "" "$(TYPE_NAME)"
  WriteRegStr HKLM "${CLASSES}\${CLASS}\DefaultIcon" "" "$INSTDIR\texturon-desktop.exe,0"
  WriteRegStr HKLM "${CLASSES}\${CLASS}\shell\open\command" "" '"$INSTDIR\texturon-desktop.exe" "%1"'
  !insertmacro OFFER .lmt
  !insertmacro OFFER .x3p
  !insertmacro OFFER .sdf
  !insertmacro OFFER .smd
  !insertmacro OFFER .prf
  ReadRegStr $0 HKLM "${CLASSES}\.lmt" ""
  ${If} $0 == ""
    WriteRegStr HKLM "${CLASSES}\.lmt" "" "${CLASS}"
  ${EndIf}
  !insertmacro TELL_SHELL
SectionEnd
!endif

Function un.onInit
  SetShellVarContext all
  SetRegView 64
FunctionEnd

Section "Uninstall"
  !insertmacro REFUSE_WHILE_RUNNING texturon.exe
  !insertmacro REFUSE_WHILE_RUNNING texturon-desktop.exe
  !include "${UNFILES}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Texturon\Texturon.lnk"
  Delete "$SMPROGRAMS\Texturon\Documentation.lnk"
  Delete "$SMPROGRAMS\Texturon\Samples.lnk"
  RMDir "$SMPROGRAMS\Texturon"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  DeleteRegKey HKLM "${PATHS}\texturon.exe"
  DeleteRegKey HKLM "${PATHS}\texturon-desktop.exe"
  ReadRegStr $0 HKLM "${CLASSES}\.lmt" ""
  ${If} $0 == "${CLASS}"
    DeleteRegValue HKLM "${CLASSES}\.lmt" ""
  ${EndIf}
  !insertmacro TAKE_BACK .lmt
  !insertmacro TAKE_BACK .x3p
  !insertmacro TAKE_BACK .sdf
  !insertmacro TAKE_BACK .smd
  !insertmacro TAKE_BACK .prf
  DeleteRegKey HKLM "${CLASSES}\${CLASS}"
  !insertmacro TELL_SHELL
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/PURGE" $1
  ${IfNot} ${Errors}
    SetShellVarContext current
    RMDir /r "$LOCALAPPDATA\Texturon"
    DeleteRegKey HKCU "Software\Texturon"
  ${EndIf}
SectionEnd
