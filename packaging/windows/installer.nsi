; The setup program. Built by packaging/windows/build, which defines VERSION, STAGE (the files to install) and OUTPUT.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma

!include MUI2.nsh

!define PRODUCT "Brevan QDM Editor"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define CLASSES "Software\Classes"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "CompanyName" "Brevan"
VIAddVersionKey "FileDescription" "${PRODUCT} setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "GPL-3.0-or-later"

Name "${PRODUCT} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\${PRODUCT}"
InstallDirRegKey HKLM "Software\${PRODUCT}" "Folder"
RequestExecutionLevel admin
ManifestDPIAware true

!define MUI_ICON "qdm-editor.ico"
!define MUI_UNICON "qdm-editor.ico"
!insertmacro MUI_PAGE_LICENSE "${STAGE}/licence.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION StartAsUser
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Through the desktop's shell, without the rights of this setup program: started with them, the editor would take the program folder
; for the place of the library.
Function StartAsUser
  Exec '"$WINDIR\explorer.exe" "$INSTDIR\qdm-editor.exe"'
FunctionEnd

; FileType ENDING CLASS DESCRIPTION: files of that ending open with the editor.
!macro FileType ENDING CLASS DESCRIPTION
  WriteRegStr HKLM "${CLASSES}\${ENDING}" "" "${CLASS}"
  WriteRegStr HKLM "${CLASSES}\${CLASS}" "" "${DESCRIPTION}"
  WriteRegStr HKLM "${CLASSES}\${CLASS}\DefaultIcon" "" '"$INSTDIR\qdm-editor.exe",0'
  WriteRegStr HKLM "${CLASSES}\${CLASS}\shell\open\command" "" '"$INSTDIR\qdm-editor.exe" "%1"'
!macroend

!macro NoFileType ENDING CLASS
  ReadRegStr $0 HKLM "${CLASSES}\${ENDING}" ""
  StrCmp $0 "${CLASS}" 0 +2
    DeleteRegValue HKLM "${CLASSES}\${ENDING}" ""
  DeleteRegKey /ifempty HKLM "${CLASSES}\${ENDING}"
  DeleteRegKey HKLM "${CLASSES}\${CLASS}"
!macroend

Section
  SetRegView 64
  SetShellVarContext all
  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "$SMPROGRAMS\${PRODUCT}"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}\${PRODUCT}.lnk" "$INSTDIR\qdm-editor.exe"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}\Help.lnk" "$INSTDIR\qdm.chm"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}\Uninstall.lnk" "$INSTDIR\uninstall.exe"

  !insertmacro FileType ".BVC" "Brevan.QdmConfiguration" "Brevan QDM Configuration"
  !insertmacro FileType ".BVD" "Brevan.ProjectorDefinition" "Brevan Projector Definition"

  WriteRegStr HKLM "Software\${PRODUCT}" "Folder" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Brevan"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\qdm-editor.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd

; Removes what was installed and nothing else: libraries and configurations are the user's.
Section Uninstall
  SetRegView 64
  SetShellVarContext all
  !include "${STAGE}.nsh"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${PRODUCT}\*.lnk"
  RMDir "$SMPROGRAMS\${PRODUCT}"
  !insertmacro NoFileType ".BVC" "Brevan.QdmConfiguration"
  !insertmacro NoFileType ".BVD" "Brevan.ProjectorDefinition"
  DeleteRegKey HKLM "Software\${PRODUCT}"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd
