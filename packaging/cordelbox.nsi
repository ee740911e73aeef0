; The installer for 64-bit Windows. scripts/make-windows-installer gives it:
;
;   VERSION  the version
;   FILES    a script with two macros, InstallFiles and RemoveFiles, which name every file of that folder
;   OUTPUT   the installer
;
; There is no page for a licence, which is the owner's to choose: a LicenseData and a Page license belong here once
; there is one.

Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Cordelbox"

!include "${FILES}"

Name "Cordelbox ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Cordelbox"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Cordelbox"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installer of the Cordelbox core library and its host tool"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "The owner of Cordelbox"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Function .onInit
    SetRegView 64
FunctionEnd

Section
    !insertmacro InstallFiles
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${KEY}" "DisplayName" "Cordelbox"
    WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
SectionEnd

Function un.onInit
    SetRegView 64
FunctionEnd

; The per-user copies of the documents are the user's work and stay. So does whatever else lies in the folder.
Section "Uninstall"
    !insertmacro RemoveFiles
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${KEY}"
SectionEnd
