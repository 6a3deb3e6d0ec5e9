; The installer. makensis -DVERSION=... -DFILES=<directory with what is installed> -DREMOVALS=<script that
; deletes these files> -DOUTPUT=<setup.exe> installer.nsi
;
; For the current user, without administrator's rights; for all users when the page or /ALLUSERS says so. /S is silent,
; /D=<directory> (last) installs elsewhere. A data file that is not the installed one any more is its user's: it is asked
; for, and kept by a silent installation or removal.
Target amd64-unicode ; as the program is; no 32-bit Windows can start it
SetCompressor /SOLID lzma
RequestExecutionLevel user
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

Var allUsers ; 1 or 0
Var forAll   ; the page's second choice

; Registry, start menu and directory of the chosen users.
!macro useContext
    ${If} $allUsers = 1
        SetShellVarContext all
    ${Else}
        SetShellVarContext current
    ${EndIf}
    SetRegView 64
!macroend

Function proposeDirectory
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
    ${If} $INSTDIR == "" ; no /D=
        Call proposeDirectory
    ${EndIf}
    !insertmacro useContext
FunctionEnd

Function chooseUsers
    ${If} $allUsers = 1 ; started again as administrator
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
    ${NSD_GetState} $forAll $0
    ${If} $0 <> ${BST_CHECKED}
        Return
    ${EndIf}
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 == "Admin"
        StrCpy $allUsers 1
        Call proposeDirectory
        !insertmacro useContext
    ${Else}
        ExecShell "runas" "$EXEPATH" "/ALLUSERS"
        Quit
    ${EndIf}
FunctionEnd

; Whether the data file that stands there is not the one that was installed: $0 is 1 or 0.
!macro dataFileIsOwn
    StrCpy $0 0
    ${If} ${FileExists} "$INSTDIR\capacities.mdb"
        FileOpen $1 "$INSTDIR\capacities.mdb" r
        FileSeek $1 0 END $2
        FileClose $1
        ${GetTime} "$INSTDIR\capacities.mdb" "M" $3 $4 $5 $6 $7 $8 $9
        ReadRegStr $1 SHCTX "${UNINSTALL}" "DataFile"
        ${If} $1 != "$2 $5-$4-$3 $7:$8:$9"
            StrCpy $0 1
        ${EndIf}
    ${EndIf}
!macroend

Section
    SetOutPath "$INSTDIR"
    !insertmacro dataFileIsOwn
    StrCpy $R0 $0
    ${If} $R0 = 1
    ${AndIf} ${Cmd} `MessageBox MB_YESNO|MB_ICONQUESTION "The valve capacities (capacities.mdb) in $INSTDIR are not those of an installation. Keep them?" /SD IDYES IDYES`
        Rename "$INSTDIR\capacities.mdb" "$INSTDIR\capacities.kept"
    ${EndIf}

    ClearErrors
    File /r "${FILES}\*"
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP "The files cannot be written to $INSTDIR. Is the program running, or is the directory somebody else's?" /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    WriteUninstaller "$INSTDIR\uninstall.exe"

    FileOpen $1 "$INSTDIR\capacities.mdb" r
    FileSeek $1 0 END $2
    FileClose $1
    ${GetTime} "$INSTDIR\capacities.mdb" "M" $3 $4 $5 $6 $7 $8 $9
    WriteRegStr SHCTX "${UNINSTALL}" "DataFile" "$2 $5-$4-$3 $7:$8:$9"
    ${If} ${FileExists} "$INSTDIR\capacities.kept"
        Delete "$INSTDIR\capacities.mdb"
        Rename "$INSTDIR\capacities.kept" "$INSTDIR\capacities.mdb"
    ${EndIf}

    CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\blanketing-valve-sizing.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "${NAME}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "Halvor-ORM"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\blanketing-valve-sizing.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
    StrCpy $0 ""
    ${If} $allUsers = 1
        StrCpy $0 " /ALLUSERS"
    ${EndIf}
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"$0'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe"$0 /S'
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" $0
SectionEnd

Function un.onInit
    StrCpy $allUsers 0
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/ALLUSERS" $1
    ${IfNot} ${Errors}
        StrCpy $allUsers 1
    ${EndIf}
    !insertmacro useContext
FunctionEnd

; Only what was installed goes.
Section "un."
    !insertmacro dataFileIsOwn
    ${If} $0 = 1
    ${AndIf} ${Cmd} `MessageBox MB_YESNO|MB_ICONQUESTION "The valve capacities (capacities.mdb) in $INSTDIR were changed since the installation. Keep them?" /SD IDYES IDYES`
    ${Else}
        Delete "$INSTDIR\capacities.mdb"
    ${EndIf}
    !include "${REMOVALS}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\${NAME}.lnk"
    DeleteRegKey SHCTX "${UNINSTALL}"
SectionEnd
