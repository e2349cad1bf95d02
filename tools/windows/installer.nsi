; The installer: for all users, into Program Files, where the program keeps its data in the user's
; folder. /S installs or removes without a question, /D=folder (last, without quotes) chooses the
; folder. Called by pack.sh, which defines VERSION, SOURCE (the folder to install), OUTPUT, LICENCE
; and REMOVAL (the commands that remove exactly what was installed).

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
ManifestDPIAware true
RequestExecutionLevel admin

!include "MUI2.nsh"

Name "Wavelark"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Wavelark"
InstallDirRegKey HKLM "Software\Brindlecove\Wavelark" "Folder"
BrandingText "Wavelark ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Wavelark"
VIAddVersionKey "FileDescription" "Installs Wavelark"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "GNU General Public License, version 3 or later"

!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Wavelark"
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\wavelark.exe"

!insertmacro MUI_PAGE_LICENSE "${LICENCE}"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

Section "Wavelark"
    SetShellVarContext all
    SetRegView 64
    SetOutPath "$INSTDIR"
    File /r "${SOURCE}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Wavelark.lnk" "$INSTDIR\wavelark.exe"
    WriteRegStr HKLM "Software\Brindlecove\Wavelark" "Folder" "$INSTDIR"
    WriteRegStr HKLM "${ENTRY}" "DisplayName" "Wavelark"
    WriteRegStr HKLM "${ENTRY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${ENTRY}" "Publisher" "Brindlecove"
    WriteRegStr HKLM "${ENTRY}" "DisplayIcon" "$INSTDIR\wavelark.exe"
    WriteRegStr HKLM "${ENTRY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${ENTRY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${ENTRY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${ENTRY}" "EstimatedSize" ${KILOBYTES}
    WriteRegDWORD HKLM "${ENTRY}" "NoModify" 1
    WriteRegDWORD HKLM "${ENTRY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
    SetShellVarContext all
    SetRegView 64
    ; The program asks whether the user's settings and data go as well. Without a user to ask, they
    ; stay.
    IfSilent +2
    ExecWait '"$INSTDIR\wavelark.exe" /uninstall'
    ; Only what was installed: the folder may hold files of the user.
    !include "${REMOVAL}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Wavelark.lnk"
    DeleteRegKey HKLM "${ENTRY}"
    DeleteRegKey HKLM "Software\Brindlecove\Wavelark"
    DeleteRegKey /ifempty HKLM "Software\Brindlecove"
SectionEnd
