; The installer. makensis -DVERSION=... -DFILES=<directory with what is installed> -DREMOVALS=<script that
; deletes these files> -DOUTPUT=<setup.exe> installer.nsi
;
; For the current user, without administrator's rights; for all users when the page or /ALLUSERS says so. /S is silent,
; /D=<directory> (last) installs elsewhere. A data file that is not the installed one any more is its user's: it is asked
; for, and kept by a silent installation or removal.
Target amd64-unicode ; as the program is; no 32-bit Windows can start it
SetCompressor /SOLID lzma
RequestExecutionLevel user
AllowSkipFiles off
ManifestDPIAware true

!include MUI2.nsh
!include nsDialogs.nsh
!include FileFunc.nsh
!include LogicLib.nsh

!define NAME "Halvor-ORM Blanketing Valve Sizing"
!define DIRECTORY "Blanketing Valve Sizing"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\blanketing-valve-sizing"

Name "${NAME}"
OutFile "${OUTPUT}"
BrandingText "${NAME} ${VERSION}"
VIProductVersion ${VERSION}.0.0
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey FileDescription "${NAME} Setup"
VIAddVersionKey CompanyName "Halvor-ORM"
VIAddVersionKey FileVersion ${VERSION}
VIAddVersionKey ProductVersion ${VERSION}
VIAddVersionKey LegalCopyright "2026 Halvor-ORM"

!define MUI_ICON blanketing-valve-sizing.ico
!define MUI_UNICON blanketing-valve-sizing.ico
!define MUI_FINISHPAGE_RUN "$INSTDIR\blanketing-valve-sizing.exe"
!insertmacro MUI_PAGE_WELCOME
Page custom chooseUsers usersChosen
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var allUsers    ; 1 or 0
Var isElevated  ; 1: started again as administrator, for all users
Var forAll      ; the page's second choice
Var dataFileOwn ; 1: the data file that stands there is its user's

; Registry, start menu and directory of the chosen users.
!macro useContext
    ${If} $allUsers = 1
        SetShellVarContext all
    ${Else}
        SetShellVarContext current
    ${EndIf}
    SetRegView 64
!macroend

; Where it stands already, or else where programs of these users stand.
Function proposeDirectory
    ReadRegStr $INSTDIR SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $INSTDIR != ""
        Return
    ${EndIf}
    ${If} $allUsers = 1
        StrCpy $INSTDIR "$PROGRAMFILES64\${DIRECTORY}"
    ${Else}
        StrCpy $INSTDIR "$LOCALAPPDATA\Programs\${DIRECTORY}"
    ${EndIf}
FunctionEnd

Function .onInit
    StrCpy $allUsers 0
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/ALLUSERS" $1
    ${IfNot} ${Errors}
        StrCpy $allUsers 1
    ${EndIf}
    StrCpy $isElevated $allUsers
    !insertmacro useContext
    ${If} $INSTDIR == "" ; no /D=
        Call proposeDirectory
    ${EndIf}
FunctionEnd

Function chooseUsers
    ${If} $isElevated = 1
        Abort
    ${EndIf}
    !insertmacro MUI_HEADER_TEXT "Who is it for?" "The program can be installed for you or for all users of this computer."
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateRadioButton} 0 20u 100% 12u "Only for &me"
    Pop $0
    ${NSD_Check} $0
    ${NSD_SetFocus} $0
    ${NSD_CreateRadioButton} 0 40u 100% 12u "For &all users (asks for an administrator)"
    Pop $forAll
    nsDialogs::Show
FunctionEnd

Function usersChosen
    StrCpy $1 $allUsers
    ${NSD_GetState} $forAll $0
    StrCpy $allUsers 0
    ${If} $0 = ${BST_CHECKED}
        StrCpy $allUsers 1
    ${EndIf}
    UserInfo::GetAccountType
    Pop $0
    ${If} $allUsers = 1
    ${AndIf} $0 != "Admin"
        StrCpy $allUsers 0
        ClearErrors
        ExecShell "runas" "$EXEPATH" "/ALLUSERS"
        ${If} ${Errors} ; declined
            Abort
        ${EndIf}
        Quit
    ${EndIf}
    !insertmacro useContext
    ${If} $allUsers <> $1
        Call proposeDirectory
    ${EndIf}
FunctionEnd

; Whether the data file that stands there is not the one that was installed, by its time to 100 ns, in no time zone.
!macro findDataFileOwn
    StrCpy $dataFileOwn 0
    ${If} ${FileExists} "$INSTDIR\capacities.mdb"
        GetFileTime "$INSTDIR\capacities.mdb" $1 $2
        ReadRegStr $3 SHCTX "${UNINSTALL}" "DataFile"
        ${If} $3 != "$1 $2"
            StrCpy $dataFileOwn 1
        ${EndIf}
    ${EndIf}
!macroend

; Ends with a message.
!macro endBecause reason
    MessageBox MB_OK|MB_ICONSTOP "$INSTDIR cannot be changed: ${reason}." /SD IDOK
    SetErrorLevel 2
    Quit
!macroend

; A program that runs cannot be opened for writing.
!macro endWhenRunning
    ${If} ${FileExists} "$INSTDIR\blanketing-valve-sizing.exe"
        ClearErrors
        FileOpen $1 "$INSTDIR\blanketing-valve-sizing.exe" a
        ${If} ${Errors}
            !insertmacro endBecause "the program is running, or the directory is somebody else's"
        ${EndIf}
        FileClose $1
    ${EndIf}
!macroend

Section
    !insertmacro endWhenRunning
    ${If} ${FileExists} "$INSTDIR\uninstall.exe" ; what an older version has and this one has not
        ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR' $1
        ${If} $1 <> 0
            !insertmacro endBecause "the older version cannot be removed"
        ${EndIf}
    ${EndIf}
    SetOutPath "$INSTDIR"
    ClearErrors
    File /r /x capacities.mdb "${FILES}\*"
    ${If} ${Errors}
        !insertmacro endBecause "the files cannot be written"
    ${EndIf}

    !insertmacro findDataFileOwn
    ${If} $dataFileOwn = 1
        ${IfNot} ${Cmd} `MessageBox MB_YESNO|MB_ICONQUESTION "The valve capacities (capacities.mdb) in $INSTDIR are not those of an installation. Keep them?" /SD IDYES IDYES`
            StrCpy $dataFileOwn 0
        ${EndIf}
    ${EndIf}
    ${If} $dataFileOwn = 0
        ClearErrors
        File "${FILES}\capacities.mdb"
        ${If} ${Errors}
            !insertmacro endBecause "the data file cannot be written"
        ${EndIf}
        GetFileTime "$INSTDIR\capacities.mdb" $1 $2
        WriteRegStr SHCTX "${UNINSTALL}" "DataFile" "$1 $2"
    ${EndIf}
    WriteUninstaller "$INSTDIR\uninstall.exe"

    CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\blanketing-valve-sizing.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "${NAME}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "Halvor-ORM"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\blanketing-valve-sizing.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" $0
SectionEnd

; For all users when this is the directory that stands in their part of the registry.
Function un.onInit
    StrCpy $allUsers 1
    !insertmacro useContext
    ReadRegStr $0 SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $0 != $INSTDIR
        StrCpy $allUsers 0
        !insertmacro useContext
    ${EndIf}
    UserInfo::GetAccountType
    Pop $0
    ${If} $allUsers = 1
    ${AndIf} $0 != "Admin"
        StrCpy $0 ""
        ${If} ${Silent}
            StrCpy $0 "/S"
        ${EndIf}
        ExecShell "runas" "$INSTDIR\uninstall.exe" $0
        Quit
    ${EndIf}
FunctionEnd

; Only what was installed goes.
Section "un."
    !insertmacro endWhenRunning
    !insertmacro findDataFileOwn
    ${If} $dataFileOwn = 1
        ${IfNot} ${Cmd} `MessageBox MB_YESNO|MB_ICONQUESTION "The valve capacities (capacities.mdb) in $INSTDIR were changed since the installation. Keep them?" /SD IDYES IDYES`
            StrCpy $dataFileOwn 0
        ${EndIf}
    ${EndIf}
    ${If} $dataFileOwn = 0
        Delete "$INSTDIR\capacities.mdb"
    ${EndIf}
    !include "${REMOVALS}"
    ${If} ${FileExists} "$INSTDIR\blanketing-valve-sizing.exe"
        !insertmacro endBecause "its files cannot be deleted"
    ${EndIf}
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    ReadRegStr $0 SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $0 == $INSTDIR ; not another installation's
        Delete "$SMPROGRAMS\${NAME}.lnk"
        DeleteRegKey SHCTX "${UNINSTALL}"
    ${EndIf}
SectionEnd
