; The setup of Murmelix, for the user who starts it: what it installs, what it upgrades, and how all of that goes again.
; docs/installing.md tells it for people. pack.py defines the names that are used below and writes files.nsh, the list of
; the files, so that the uninstaller knows exactly what was installed.
!if ${BITS} == 64
  Target amd64-unicode
!else
  Target x86-unicode
!endif
SetCompressor /SOLID ${COMPRESSION}
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include WinVer.nsh
!include WordFunc.nsh
!include "${LISTS}"

!define PROGRAM "Murmelix"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PROGRAM}"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
!define SERVER "$WINDIR\msagent\AgentServer.exe"

; Exit statuses of a setup and of an uninstallation without windows, beside those of NSIS: 0 done, 1 given up by the user,
; 2 given up because something stood in the way.
!define STATUS_NO_CHARACTERS 3 ; everything else is done

Name "${PROGRAM}"
BrandingText "${PROGRAM} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PROGRAM}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS all
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PROGRAM}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Setup of ${PROGRAM}"
VIAddVersionKey "CompanyName" "The Murmelix project"
VIAddVersionKey "LegalCopyright" "MIT licence"

!define MUI_ICON "${ICONS}/setup.ico"
!define MUI_UNICON "${ICONS}/setup.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURES}/wizard.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${PICTURES}/wizard.bmp"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${PICTURES}/header.bmp"
!define MUI_HEADERIMAGE_UNBITMAP "${PICTURES}/header.bmp"
!define MUI_ABORTWARNING

!define MUI_WELCOMEPAGE_TITLE "Welcome to Murmelix ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "Murmelix reads your Messenger conversations aloud: every contact gets an animated character \
of its own, which speaks what the contact writes.$\r$\n$\r$\nThe program is installed for you alone and needs no \
administrator. Where there are no characters on this computer yet, Windows asks once whether they may be put into its own \
folder.$\r$\n$\r$\nClick Next to continue."
!define MUI_FINISHPAGE_TITLE "Murmelix is installed"
!define MUI_FINISHPAGE_TEXT "Sign in to Messenger, open a conversation, and press Start Reading Selected Conversation."
!define MUI_FINISHPAGE_RUN "$INSTDIR\Murmelix.exe"
!define MUI_FINISHPAGE_RUN_TEXT "&Start Murmelix"

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${STAGED}/LICENSE.txt"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!define MUI_PAGE_HEADER_TEXT "What is to be removed"
!define MUI_PAGE_HEADER_SUBTEXT "Your settings are kept unless you tick them."
!define MUI_COMPONENTSPAGE_TEXT_TOP "Do you want your options, matchups, voices and accounts to be removed from this computer, \
too? Then tick My settings. Click Uninstall to begin."
!define MUI_COMPONENTSPAGE_TEXT_COMPLIST "To be removed:"
!define MUI_PAGE_CUSTOMFUNCTION_SHOW un.HideSpace
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var Upgrading ; "yes": the uninstaller of an older version makes room for a newer one
Var Found     ; names of programs that run, a line each
Var Path
Var Folder
Var Earlier   ; where the version is that gives way; empty where there is none
Var Process

; Programs that run from the folder, or are the character server: files of theirs cannot be replaced.
!macro RUNNING_PROGRAMS un
; Tells the windows of the process $R8 that the session of the user ends for them, as Windows itself does for a setup: a
; program puts away what it holds, and ends.
Function ${un}TellOfTheEnd
  Push $0
  Push $1
  StrCpy $0 0
  ${Do}
    FindWindow $0 "" "" 0 $0
    ${If} $0 P= 0
      ${Break}
    ${EndIf}
    System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r1) i'
    ${If} $1 = $R8
      ; WM_QUERYENDSESSION and WM_ENDSESSION with ENDSESSION_CLOSEAPP; a window that hangs is not waited for.
      System::Call 'user32::SendMessageTimeoutW(p r0, i 0x11, p 0, p 1, i 2, i 2000, *p) p'
      System::Call 'user32::SendMessageTimeoutW(p r0, i 0x16, p 1, p 1, i 2, i 2000, *p) p'
    ${EndIf}
  ${Loop}
  Pop $1
  Pop $0
FunctionEnd

; Looks whether the program whose file is $Path runs, and does with it what $Process is: "find" adds its name to $Found,
; "tell" tells it to end, "end" ends it where it has not in five seconds.
Function ${un}LookForProgram
  Push $0
  Push $1
  Push $2
  Push $3
  Push $4
  Push $5
  ; Windows tells the whole path of a program, however it was started.
  GetFullPathName $5 $Path
  ${If} $5 == ""
    Goto over
  ${EndIf}
  System::Alloc 65536
  Pop $0
  System::Call 'kernel32::K32EnumProcesses(p r0, i 65536, *i .r1) i'
  IntOp $1 $1 / 4
  ${While} $1 > 0
    IntOp $1 $1 - 1
    IntOp $2 $1 * 4
    IntPtrOp $2 $0 + $2
    System::Call '*$2(i .r2)'
    ; To ask for its name, to end it, and to wait for its end.
    System::Call 'kernel32::OpenProcess(i 0x101001, i 0, i r2) p .r3'
    ${If} $3 P<> 0
      StrCpy $4 ""
      System::Call 'kernel32::QueryFullProcessImageNameW(p r3, i 0, w .r4, *i ${NSIS_MAX_STRLEN}) i'
      ${If} $4 == $5
        ${If} $Process == "tell"
          StrCpy $R8 $2
          Call ${un}TellOfTheEnd
        ${ElseIf} $Process == "end"
          System::Call 'kernel32::WaitForSingleObject(p r3, i 5000) i .r2'
          ${If} $2 <> 0
            System::Call 'kernel32::TerminateProcess(p r3, i 1) i'
            System::Call 'kernel32::WaitForSingleObject(p r3, i 10000) i'
          ${EndIf}
        ${Else}
          ${GetFileName} $5 $2
          StrCpy $Found "$Found$\r$\n$2"
        ${EndIf}
      ${EndIf}
      System::Call 'kernel32::CloseHandle(p r3) i'
    ${EndIf}
  ${EndWhile}
  System::Free $0
over:
  Pop $5
  Pop $4
  Pop $3
  Pop $2
  Pop $1
  Pop $0
FunctionEnd

Function ${un}LookBelow
  ; Murmelix first: it would have the others started again.
  StrCpy $Path "$Folder\Murmelix.exe"
  Call ${un}LookForProgram
  StrCpy $Path "$Folder\MessengerClient.exe"
  Call ${un}LookForProgram
  StrCpy $Path "$Folder\updater.exe"
  Call ${un}LookForProgram
  StrCpy $Path "$Folder\tv_enua.exe"
  Call ${un}LookForProgram
  StrCpy $Path "$Folder\MSAGENT.exe"
  Call ${un}LookForProgram
FunctionEnd

Function ${un}LookForPrograms
  StrCpy $Found ""
  StrCpy $Folder "$INSTDIR"
  Call ${un}LookBelow
  ${If} $Earlier != "$INSTDIR"
  ${AndIf} $Earlier != ""
    StrCpy $Folder "$Earlier"
    Call ${un}LookBelow
  ${EndIf}
  StrCpy $Path "${SERVER}"
  Call ${un}LookForProgram
FunctionEnd

; Nothing has been changed yet where the user does not want them to end, or one of them does not.
Function ${un}EndPrograms
  StrCpy $Process "find"
  Call ${un}LookForPrograms
  ${If} $Found == ""
    Return
  ${EndIf}
  MessageBox MB_OKCANCEL|MB_ICONEXCLAMATION "These programs of Murmelix are running and have to be closed first:\
$\r$\n$Found$\r$\n$\r$\nClick OK to close them now." /SD IDOK IDOK wanted
  Abort "Murmelix is running."
wanted:
  StrCpy $Process "tell"
  Call ${un}LookForPrograms
  StrCpy $Process "end"
  Call ${un}LookForPrograms
  StrCpy $Process "find"
  Call ${un}LookForPrograms
  ${If} $Found != ""
    MessageBox MB_OK|MB_ICONSTOP "These programs could not be closed:$\r$\n$Found$\r$\n$\r$\nPlease close them, and try \
again." /SD IDOK
    Abort "Murmelix is running."
  ${EndIf}
FunctionEnd
!macroend
!insertmacro RUNNING_PROGRAMS ""
!insertmacro RUNNING_PROGRAMS "un."

; A switch of the command line with "=0" or "=1" behind it selects a section, or does not.
!macro SECTION_SWITCH switch section
  ClearErrors
  ${GetOptions} $R0 "/${switch}=" $0
  ${IfNot} ${Errors}
    ${If} $0 == "1"
      !insertmacro SelectSection ${section}
    ${Else}
      !insertmacro UnselectSection ${section}
    ${EndIf}
  ${EndIf}
!macroend

!macro ONLY_ONE
  System::Call 'kernel32::CreateMutexW(p 0, i 0, w "MurmelixSetup") p ?e'
  Pop $0
  ${If} $0 = 183 ; ERROR_ALREADY_EXISTS
    MessageBox MB_OK|MB_ICONEXCLAMATION "Murmelix is being installed or removed already." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
!macroend

Section "-Before"
  SetShellVarContext current
  ReadRegStr $Earlier HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${IfNot} ${FileExists} "$Earlier\Uninstall.exe"
    StrCpy $Earlier ""
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\Uninstall.exe"
    StrCpy $Earlier "$INSTDIR"
  ${EndIf}
  Call EndPrograms
  ClearErrors
  CreateDirectory "$INSTDIR"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "The folder $INSTDIR cannot be made. Please choose another one." /SD IDOK
    Abort "The folder $INSTDIR cannot be made."
  ${EndIf}
  Call MakeRoom
  DeleteRegValue HKCU "${RUN_KEY}" "${PROGRAM}"
SectionEnd

Section "Murmelix" SecProgram
  SectionIn RO
  ; First of all: what is not installed to its end can be removed, too.
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PROGRAM}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Murmelix.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "The Murmelix project"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ClearErrors
  !insertmacro INSTALL_PROGRAM
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "Not all files could be written to $INSTDIR. Is the disk full?" /SD IDOK
    Abort "Not all files could be written."
  ${EndIf}
SectionEnd

Section "Messenger client" SecMessenger
  !insertmacro INSTALL_MESSENGER
  ; One of somebody else's stays as it is.
  ExecWait '"$INSTDIR\MessengerClient.exe" /regserver'
SectionEnd

Section "Start menu" SecMenu
  SetOutPath "$INSTDIR"
  CreateDirectory "$SMPROGRAMS\${PROGRAM}"
  CreateShortcut "$SMPROGRAMS\${PROGRAM}\Murmelix.lnk" "$INSTDIR\Murmelix.exe"
  CreateShortcut "$SMPROGRAMS\${PROGRAM}\Voices.lnk" "$INSTDIR\tv_enua.exe"
  ${If} ${SectionIsSelected} ${SecMessenger}
    CreateShortcut "$SMPROGRAMS\${PROGRAM}\Messenger Client.lnk" "$INSTDIR\MessengerClient.exe"
  ${EndIf}
SectionEnd

Section /o "Start with Windows" SecLogon
  WriteRegStr HKCU "${RUN_KEY}" "${PROGRAM}" '"$INSTDIR\Murmelix.exe" /Min'
SectionEnd

; An earlier version gives way; what it has registered goes where that is not wanted any more.
Function MakeRoom
  ${If} $Earlier == ""
    Return
  ${EndIf}
  DetailPrint "Removing the installed version"
  ${If} ${FileExists} "$Earlier\MessengerClient.exe"
  ${AndIfNot} ${SectionIsSelected} ${SecMessenger}
    ExecWait '"$Earlier\MessengerClient.exe" /unregserver'
  ${EndIf}
  ; By what the earlier version has brought, MSAGENT.exe tells what of the Windows folder is ours to replace.
  ${If} ${FileExists} "$Earlier\msagent.before\*.*"
    Rename "$Earlier\msagent.before" "$INSTDIR\msagent.before" ; it was never replaced
  ${Else}
    Rename "$Earlier\msagent" "$INSTDIR\msagent.before"
  ${EndIf}
  ExecWait '"$Earlier\Uninstall.exe" /S /upgrade _?=$Earlier'
  ${If} $Earlier != "$INSTDIR"
    Delete "$Earlier\CharPics\*.gif"
    RMDir "$Earlier\CharPics"
    Delete "$Earlier\Uninstall.exe"
    RMDir "$Earlier" ; where nothing of the user's is in it
  ${EndIf}
FunctionEnd

; "yes" in $0 where programs of this Windows find an Agent of somebody else's.
Function LookForAgent
  StrCpy $0 "no"
  ReadRegStr $1 HKCR "Agent.Control.2\CLSID" ""
  ${If} $1 == ""
    Return
  ${EndIf}
  ReadRegStr $2 HKCR "CLSID\$1\LocalServer32" ""
  ${If} $2 == ""
    SetRegView 64
    ReadRegStr $2 HKCR "CLSID\$1\LocalServer32" ""
    SetRegView lastused
  ${EndIf}
  ClearErrors
  ${WordFind} "$2" "\AgentServer.exe" "E+1{" $3
  ${If} ${Errors}
    StrCpy $0 "yes"
  ${EndIf}
FunctionEnd

Section "-Neighbours"
  SetOutPath "$INSTDIR"
  ClearErrors
  Call LookForAgent
  ${If} $0 == "yes"
    DetailPrint "An Agent is installed on this computer already: nothing of it is changed."
    RMDir /r "$INSTDIR\msagent.before"
  ${Else}
    DetailPrint "Setting up the character server"
    ; Windows asks whether its own folder may be written.
    ExecShellWait "" "$INSTDIR\MSAGENT.exe" "/quiet"
    ReadRegStr $1 HKCR "Agent.Control.2\CLSID" ""
    ${If} $1 == ""
    ${OrIfNot} ${FileExists} "${SERVER}"
      SetErrorLevel ${STATUS_NO_CHARACTERS}
      MessageBox MB_OK|MB_ICONINFORMATION "The characters could not be put into the Windows folder, or were not allowed to \
be. Murmelix will ask for that again when it is started." /SD IDOK
    ${Else}
      RMDir /r "$INSTDIR\msagent.before"
    ${EndIf}
    DetailPrint "Looking for a voice"
    ExecWait '"$INSTDIR\tv_enua.exe" /quiet' $0
    ${If} $0 != 0
    ${AndIfNot} ${Silent}
      Exec '"$INSTDIR\tv_enua.exe"' ; tells how to get one
    ${EndIf}
  ${EndIf}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SecProgram} "The program, its sounds and pictures, and the characters."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecMessenger} "A Messenger to sign in to, and to chat networks with."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecMenu} "Murmelix, Voices and the Messenger client in the start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecLogon} "Murmelix starts beside the clock whenever you sign in to Windows."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  SetShellVarContext current
  ${IfNot} ${AtLeastWin7}
    MessageBox MB_OK|MB_ICONSTOP "Murmelix needs Windows 7 or later." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  !insertmacro ONLY_ONE
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "DisplayVersion"
  ${If} $0 != ""
    ${VersionCompare} "$0" "${VERSION}" $1
    ${If} $1 = 1
      MessageBox MB_YESNO|MB_ICONQUESTION "Murmelix $0 is installed, which is newer. Shall it be replaced by version \
${VERSION}?" /SD IDYES IDYES older_wanted
      SetErrorLevel 1
      Quit
older_wanted:
    ${EndIf}
    ; What was chosen the last time.
    ${IfNot} ${FileExists} "$INSTDIR\MessengerClient.exe"
      !insertmacro UnselectSection ${SecMessenger}
    ${EndIf}
    ${IfNot} ${FileExists} "$SMPROGRAMS\${PROGRAM}\*.*"
      !insertmacro UnselectSection ${SecMenu}
    ${EndIf}
    ReadRegStr $0 HKCU "${RUN_KEY}" "${PROGRAM}"
    ${If} $0 != ""
      !insertmacro SelectSection ${SecLogon}
    ${EndIf}
  ${EndIf}
  ${GetParameters} $R0
  !insertmacro SECTION_SWITCH "messenger" ${SecMessenger}
  !insertmacro SECTION_SWITCH "menu" ${SecMenu}
  !insertmacro SECTION_SWITCH "logon" ${SecLogon}
FunctionEnd

; What is removed needs no space.
Function un.HideSpace
  FindWindow $0 "#32770" "" $HWNDPARENT
  GetDlgItem $0 $0 1023
  ShowWindow $0 ${SW_HIDE}
FunctionEnd

Section "un.Murmelix" UnProgram
  SectionIn RO
  SetShellVarContext current
  Call un.EndPrograms
  ${If} $Upgrading != "yes"
    ${If} ${FileExists} "$INSTDIR\MessengerClient.exe"
      ExecWait '"$INSTDIR\MessengerClient.exe" /unregserver'
    ${EndIf}
    ${If} ${FileExists} "${SERVER}"
      SetOutPath "$INSTDIR"
      ; Windows asks whether its own folder may be written.
      ExecShellWait "" "$INSTDIR\MSAGENT.exe" "/quiet /uninstall"
      ${If} ${FileExists} "${SERVER}"
        SetErrorLevel ${STATUS_NO_CHARACTERS}
        MessageBox MB_OK|MB_ICONINFORMATION "The characters could not be removed from the Windows folder, or were not \
allowed to be: ${SERVER} and its folder stay." /SD IDOK
      ${EndIf}
      SetOutPath "$TEMP" ; a folder that is somebody's current one is not removed
    ${EndIf}
    DeleteRegValue HKCU "${RUN_KEY}" "${PROGRAM}"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    Delete "$INSTDIR\CharPics\*.gif" ; those that the program has fetched, too
    RMDir /r "$INSTDIR\msagent.before"
  ${EndIf}
  Delete "$SMPROGRAMS\${PROGRAM}\Murmelix.lnk"
  Delete "$SMPROGRAMS\${PROGRAM}\Voices.lnk"
  Delete "$SMPROGRAMS\${PROGRAM}\Messenger Client.lnk"
  RMDir "$SMPROGRAMS\${PROGRAM}"
  !insertmacro REMOVE_FILES
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR" ; where nothing of the user's is in it
  RMDir "$LOCALAPPDATA\Programs" ; where nothing else is in it
SectionEnd

Section /o "un.My settings" UnSettings
  DeleteRegKey HKCU "Software\Murmelix"
  DeleteRegKey HKCU "Software\MurmelixWindows"
  DeleteRegKey HKCU "Software\MurmelixUpdater"
  DeleteRegKey HKCU "Software\Murmelix AgentServer"
  DeleteRegKey HKCU "Software\MessengerClient"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${UnProgram} "Everything that was installed, and the pictures that were fetched."
  !insertmacro MUI_DESCRIPTION_TEXT ${UnSettings} "Options, matchups, voices and accounts. Kept, they are there again when \
Murmelix is installed again."
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/upgrade" $0
  ${IfNot} ${Errors}
    StrCpy $Upgrading "yes" ; the setup that makes us do so is the one there may be
    Return
  ${EndIf}
  !insertmacro ONLY_ONE
  ClearErrors
  ${GetOptions} $R0 "/removesettings" $0
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${UnSettings}
  ${EndIf}
FunctionEnd
