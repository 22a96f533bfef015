; The installer. Beside it stand VERSION, FOLDER (what to install), OUTPUT, and the lists of what the uninstaller removes.
; corvane.ini, Reports and databases in the program's folder are never touched, neither by installing nor by removing.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
!include MUI2.nsh

!define NAME "Corvane Reporter"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Corvane Reporter"

Name "${NAME}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\${NAME}"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
RequestExecutionLevel admin
ManifestDPIAware true
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "FileDescription" "${NAME} installer"
VIAddVersionKey "CompanyName" "Corvane"
VIAddVersionKey "LegalCopyright" "Copyright 2026 Corvane. All rights reserved."
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\corvane-reporter-demo.cmd"
!define MUI_FINISHPAGE_RUN_NOTCHECKED
!define MUI_FINISHPAGE_RUN_TEXT "Show the program with a made-up clinic"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; What runs cannot be replaced; half a new version beside half an old one would be worse than none.
!macro RefuseWhileRunning
  IfFileExists "$INSTDIR\corvane-reporter.exe" 0 notRunning
  ClearErrors
  FileOpen $0 "$INSTDIR\corvane-reporter.exe" a
  IfErrors 0 closeIt
  MessageBox MB_OK|MB_ICONEXCLAMATION "${NAME} cannot be changed in $INSTDIR. Close it for every user of this computer, and see that you have an administrator's rights. Nothing was changed." /SD IDOK
  SetErrorLevel 2
  Quit
closeIt:
  FileClose $0
notRunning:
!macroend

Section
  SetShellVarContext all
  !insertmacro RefuseWhileRunning
  ; An older version goes first, so that no file of it stays behind.
  IfFileExists "$INSTDIR\uninstall.exe" 0 install
  ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
install:
  ClearErrors
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}\*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  IfErrors 0 written
  MessageBox MB_OK|MB_ICONSTOP "Not every file could be written to $INSTDIR. See that there is room and that you have an administrator's rights, and install again." /SD IDOK
  SetErrorLevel 2
  Quit
written:
  SetOutPath "$INSTDIR" ; the folder that shortcuts start in
  CreateDirectory "$SMPROGRAMS\${NAME}"
  CreateShortcut "$SMPROGRAMS\${NAME}\${NAME}.lnk" "$INSTDIR\corvane-reporter.exe"
  CreateShortcut "$SMPROGRAMS\${NAME}\Made-up clinic.lnk" "$INSTDIR\corvane-reporter-demo.cmd" "" "$INSTDIR\corvane-reporter.exe" 0 SW_SHOWMINIMIZED
  WriteRegStr HKLM "${KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "DisplayIcon" "$INSTDIR\corvane-reporter.exe"
  WriteRegStr HKLM "${KEY}" "Publisher" "Corvane"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  SetShellVarContext all
  !insertmacro RefuseWhileRunning
  !include "${REMOVALS}" ; each installed file by its name
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR" ; only when nothing of the clinic's is in it
  Delete "$SMPROGRAMS\${NAME}\${NAME}.lnk"
  Delete "$SMPROGRAMS\${NAME}\Made-up clinic.lnk"
  RMDir "$SMPROGRAMS\${NAME}"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
