; The installer, in Italian and English; installer.sh gives it what varies:
;   VERSION, ARCH (x86_64, i686), STAGE (the folder with all files), OUTPUT, INSTALL and UNINSTALL (lists of files)
;
; Silent: /S, with /AllUsers or /CurrentUser, and /D=FOLDER at the end. The exit code is 0, or 2 when nothing was done.
Unicode true
!if "${ARCH}" == "x86_64"
  Target amd64-unicode
  !define MULTIUSER_USE_PROGRAMFILES64
  !define WIDTH "64 bit"
  !define FOLDER "Zul_MessageBuilder"
!else
  Target x86-unicode
  !define WIDTH "32 bit"
  ; A user's own programs stand in one folder, whatever their width.
  !define FOLDER "Zul_MessageBuilder (32 bit)"
!endif

!define NAME "Zul_MessageBuilder"
!define ENTRIES "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define ENTRY "${ENTRIES}\${NAME}-${ARCH}"
!define LIBRARY "$INSTDIR\bin\Zul_MessageBuilder.dll"

Name "${NAME}"
OutFile "${OUTPUT}"
SetCompressor /SOLID lzma
ManifestDPIAware true

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "${FOLDER}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${ENTRY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "UninstallString"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${ENTRY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${STAGE}\licences\NOTICE.txt"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Italian"
!insertmacro MUI_LANGUAGE "English"

LangString Busy ${LANG_ITALIAN} "${NAME} è in uso. Chiudere il programma che lo usa e riprovare."
LangString Busy ${LANG_ENGLISH} "${NAME} is in use. Close the program that uses it and try again."
LangString NotRegistered ${LANG_ITALIAN} "La registrazione di ${NAME} non è riuscita."
LangString NotRegistered ${LANG_ENGLISH} "${NAME} could not be registered."
LangString Settings ${LANG_ITALIAN} "Cancellare anche le impostazioni di questa postazione?"
LangString Settings ${LANG_ENGLISH} "Delete the settings of this workstation too?"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_ITALIAN} "ProductName" "${NAME}"
VIAddVersionKey /LANG=${LANG_ITALIAN} "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ITALIAN} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ITALIAN} "FileDescription" "${NAME} (${WIDTH})"
VIAddVersionKey /LANG=${LANG_ITALIAN} "LegalCopyright" "-"

!macro VIEW
  !if "${ARCH}" == "x86_64"
    SetRegView 64
  !endif
!macroend

; A library that a program has loaded cannot be replaced: nothing is done then.
!macro STOP_IF_BUSY
  ${If} ${FileExists} "${LIBRARY}"
    ClearErrors
    FileOpen $0 "${LIBRARY}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "$(Busy)" /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; regsvr32 of the same width as this program, for whom the installation is.
!macro REGSVR32 OPTIONS
  ${If} $MultiUser.InstallMode == "AllUsers"
    ExecWait '"$SYSDIR\regsvr32.exe" /s ${OPTIONS} "${LIBRARY}"' $0
  ${Else}
    ExecWait '"$SYSDIR\regsvr32.exe" /s ${OPTIONS} /n /i:user "${LIBRARY}"' $0
  ${EndIf}
!macroend

Var Wanted ; the folder of /D=, which finding out for whom it is would overwrite

Function .onInit
  !insertmacro VIEW
  StrCpy $Wanted $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $Wanted != ""
    StrCpy $INSTDIR $Wanted
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro VIEW
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
  !insertmacro STOP_IF_BUSY
  ; An older version goes first, with the files that this one has no more; settings and data stay.
  ReadRegStr $1 SHCTX "${ENTRY}" "InstallLocation"
  ${If} $1 != ""
  ${AndIf} ${FileExists} "$1\uninstall.exe"
    ExecWait '"$1\uninstall.exe" /S /$MultiUser.InstallMode _?=$1'
    Delete "$1\uninstall.exe"
  ${EndIf}

  !include "${INSTALL}"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  WriteRegStr SHCTX "${ENTRY}" "DisplayName" "${NAME} (${WIDTH})"
  WriteRegStr SHCTX "${ENTRY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${ENTRY}" "Publisher" "${NAME}"
  WriteRegStr SHCTX "${ENTRY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${ENTRY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${ENTRY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${ENTRY}" "NoModify" 1
  WriteRegDWORD SHCTX "${ENTRY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${ENTRY}" "EstimatedSize" $0

  !insertmacro REGSVR32 ""
  ${If} $0 != 0
    MessageBox MB_OK|MB_ICONSTOP "$(NotRegistered)" /SD IDOK
    SetErrorLevel 1
  ${EndIf}
SectionEnd

Section "Uninstall"
  !insertmacro STOP_IF_BUSY
  !insertmacro REGSVR32 "/u"
  ; Files that were installed, and folders that are empty then: log, column layout and reports stay.
  !include "${UNINSTALL}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey SHCTX "${ENTRY}"
  ; The machine always has this key; a user without other installations of his own may have had none.
  DeleteRegKey /ifempty HKCU "${ENTRIES}"
  MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "$(Settings)" /SD IDNO IDNO keep
  DeleteRegKey HKCU "Software\TESK\ZUL"
  DeleteRegKey /ifempty HKCU "Software\TESK"
  keep:
SectionEnd
