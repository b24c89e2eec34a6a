; The installer for Windows, called by scripts/release.sh:
;
;   makensis -DVERSION=1.0.0 -DFILES=<folder of the zip's content> -DOUTPUT=<file.exe> Tolvane.nsi
;
; The installer takes /S (asks nothing) and, last, /D=FOLDER, the host's folder, never in quotes; the
; uninstaller /S and /SETTINGS (deletes Operations\Tolvane.ini, too). They end with 0, or
;
;   1  the user has cancelled
;   2  there is no such folder, or none was given
;   3  a host holds the module, or a file of the installation is in use
;   4  a file cannot be written

Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel admin
ManifestDPIAware true
CRCCheck force

!include MUI2.nsh
!include FileFunc.nsh
!include WordFunc.nsh
!include LogicLib.nsh

!define KEY "Software\Tolvane"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define INI "$INSTDIR\Operations\Tolvane.ini"
; All but the module lies here, and also what is needed to put everything back.
!define OURS "$INSTDIR\Tolvane"
!define RECORD "${OURS}\installed.ini"
!define EXIT_FOLDER 2
!define EXIT_HELD 3
!define EXIT_WRITE 4

Name "Tolvane ${VERSION}"
OutFile "${OUTPUT}"
InstallDirRegKey HKLM "${KEY}" "Folder"
BrandingText "Tolvane ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 "ProductName" "Tolvane"
VIAddVersionKey /LANG=0 "FileDescription" "Tolvane"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "LegalCopyright" "© 2026 The Tolvane authors, MIT"

!define MUI_ICON "${SOURCE}\src\articles\forms\scale.ico"
!define MUI_UNICON "${SOURCE}\src\articles\forms\scale.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${SOURCE}\packaging\windows\side.bmp"
!define MUI_ABORTWARNING
; The next time, and when it is removed, nobody is asked again.
!define MUI_LANGDLL_REGISTRY_ROOT HKLM
!define MUI_LANGDLL_REGISTRY_KEY "${KEY}"
!define MUI_LANGDLL_REGISTRY_VALUENAME "Language"
!define MUI_LANGDLL_WINDOWTITLE "Tolvane ${VERSION}"
!define MUI_LANGDLL_INFO "Изберете език. Choose a language."
!define MUI_LICENSEPAGE_TEXT_TOP "$(TextLicence)"
!define MUI_DIRECTORYPAGE_TEXT_TOP "$(TextFolder)"
!define MUI_DIRECTORYPAGE_TEXT_DESTINATION "$(TextHost)"
!define MUI_FINISHPAGE_TITLE "$(TextDone)"
!define MUI_FINISHPAGE_TEXT "$(TextNext)"
!define MUI_FINISHPAGE_SHOWREADME "${OURS}\README.txt"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "$(TextReadme)"
!define MUI_COMPONENTSPAGE_NODESC

!insertmacro MUI_PAGE_LICENSE "${FILES}\LICENSE.txt"
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE CheckHostFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES

!define MUI_LANGDLL_ALLLANGUAGES
!insertmacro MUI_LANGUAGE "Bulgarian"
!insertmacro MUI_LANGUAGE "English"
!include Texts.nsh

; Tells why it ends: a window, or, when nothing may be asked, the standard error.
!macro SayFunction prefix
Function ${prefix}Say
    Exch $0
    ${If} ${Silent}
        Push $1
        System::Call 'kernel32::GetStdHandle(i -12) p .r1'
        ${If} $1 P<> 0
        ${AndIf} $1 P<> -1
            FileWrite $1 "Tolvane: $0$\r$\n"
        ${Else}
            System::Call 'kernel32::AttachConsole(i -1) i .r1'
            System::Call 'kernel32::GetStdHandle(i -12) p .r1'
            FileWrite $1 "Tolvane: $0$\r$\n"
        ${EndIf}
        Pop $1
    ${Else}
        MessageBox MB_OK|MB_ICONSTOP "$0"
    ${EndIf}
    Pop $0
FunctionEnd

; A program that runs and a library that is loaded cannot be opened for writing.
Function ${prefix}IsHeld
    Exch $0
    Push $1
    StrCpy $1 0
    ${If} ${FileExists} "$0"
        SetFileAttributes "$0" NORMAL
        ClearErrors
        FileOpen $1 "$0" a
        ${If} ${Errors}
            StrCpy $1 1
        ${Else}
            FileClose $1
            StrCpy $1 0
        ${EndIf}
    ${EndIf}
    StrCpy $0 $1
    Pop $1
    Exch $0
FunctionEnd

; Ends the program unless all of these files can be replaced.
Function ${prefix}NeedFree
    again:
    Push "$INSTDIR\Operations\Tolvane.dll"
    Call ${prefix}IsHeld
    Pop $0
    ${If} $0 = 1
        StrCpy $1 "$(TextHeld)"
        Goto refuse
    ${EndIf}
    Push "${OURS}\tolvane.exe"
    Call ${prefix}IsHeld
    Pop $0
    Push "${OURS}\virtual-scale.exe"
    Call ${prefix}IsHeld
    Pop $1
    IntOp $0 $0 + $1
    ${If} $0 = 0
        Return
    ${EndIf}
    StrCpy $1 "$(TextBusy)"
    refuse:
    ${IfNot} ${Silent}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$1" IDRETRY again
        SetErrorLevel ${EXIT_HELD}
        Quit
    ${EndIf}
    Push $1
    Call ${prefix}Say
    SetErrorLevel ${EXIT_HELD}
    Quit
FunctionEnd
!macroend
!insertmacro SayFunction ""
!insertmacro SayFunction "un."

; The name of this installation's key: a path without backslashes, as one host may lie beside another.
!macro KeyOfFolder result
    ${WordReplace} "$INSTDIR" "\" "/" "+" ${result}
    StrCpy ${result} "${UNINSTALL}\Tolvane ${result}"
!macroend

; A file of somebody else's with this name is put back when ours goes.
!macro KeepForeign path name
    ${If} $FirstTime = 1
    ${AndIf} ${FileExists} "${path}"
        CreateDirectory "${OURS}\before"
        CopyFiles /SILENT "${path}" "${OURS}\before\${name}"
    ${EndIf}
!macroend

!macro PutBack path name
    Delete "${path}"
    ${If} ${FileExists} "${OURS}\before\${name}"
        Rename "${OURS}\before\${name}" "${path}"
    ${EndIf}
!macroend

Var FirstTime
Var Key
Var MadeOperations

Function .onInit
    !insertmacro MUI_LANGDLL_DISPLAY
    ${If} ${Silent}
        Call CheckHostFolder
    ${EndIf}
FunctionEnd

; Ends a silent installation, and stays on the page of a visible one.
Function CheckHostFolder
    ${If} $INSTDIR == ""
    ${OrIfNot} ${FileExists} "$INSTDIR\*.*"
        ${If} ${Silent}
            Push "$(TextNoFolder) $(TextSilentFolder)"
            Call Say
            SetErrorLevel ${EXIT_FOLDER}
            Quit
        ${EndIf}
        Push "$(TextNoFolder)"
        Call Say
        Abort
    ${EndIf}
    ${IfNot} ${Silent}
    ${AndIfNot} ${FileExists} "$INSTDIR\*.exe"
        MessageBox MB_YESNO|MB_ICONQUESTION "$(TextNoProgram)" IDYES +2
        Abort
    ${EndIf}
FunctionEnd

Function CannotWrite
    Push "$(TextCannotWrite)"
    Call Say
    SetErrorLevel ${EXIT_WRITE}
    Quit
FunctionEnd

; The former module stays; what is new goes.
Function NotReplaced
    Delete "$INSTDIR\Operations\Tolvane.dll.new"
    ; Does nothing while the old one is still in its place.
    Rename "$INSTDIR\Operations\Tolvane.dll.old" "$INSTDIR\Operations\Tolvane.dll"
    Call CannotWrite
FunctionEnd

Section "$(TextModule)" SectionModule
    SectionIn RO
    Call NeedFree
    StrCpy $FirstTime 1
    ${If} ${FileExists} "${RECORD}"
        StrCpy $FirstTime 0
    ${EndIf}
    StrCpy $MadeOperations 0
    ${IfNot} ${FileExists} "$INSTDIR\Operations\*.*"
        StrCpy $MadeOperations 1
    ${EndIf}
    ClearErrors
    CreateDirectory "$INSTDIR\Operations"
    CreateDirectory "${OURS}"
    !insertmacro KeepForeign "$INSTDIR\Operations\Tolvane.dll" "Tolvane.dll"
    ${If} ${Errors}
        RMDir "${OURS}"
        Call CannotWrite
    ${EndIf}
    ${If} $FirstTime = 1
        WriteINIStr "${RECORD}" "Before" "MadeOperations" "$MadeOperations"
    ${EndIf}
    WriteINIStr "${RECORD}" "Now" "Version" "${VERSION}"

    ; Written beside it and renamed: the module there is the old one or the new one.
    SetOutPath "$INSTDIR\Operations"
    ClearErrors
    File "/oname=Tolvane.dll.new" "${FILES}\Operations\Tolvane.dll"
    ; Each question clears the flag of errors.
    ${If} ${Errors}
        Call NotReplaced
    ${EndIf}
    ${If} ${FileExists} "$INSTDIR\Operations\Tolvane.dll"
        Delete "$INSTDIR\Operations\Tolvane.dll.old"
        ClearErrors
        Rename "$INSTDIR\Operations\Tolvane.dll" "$INSTDIR\Operations\Tolvane.dll.old"
        ${If} ${Errors}
            Call NotReplaced
        ${EndIf}
    ${EndIf}
    Rename "$INSTDIR\Operations\Tolvane.dll.new" "$INSTDIR\Operations\Tolvane.dll"
    ${If} ${Errors}
        Call NotReplaced
    ${EndIf}
    Delete "$INSTDIR\Operations\Tolvane.dll.old"
    ClearErrors
    SetOutPath "${OURS}"
    File "${FILES}\README.txt"
    File "${FILES}\LICENSE.txt"
    File "${FILES}\CHANGELOG.md"
    File /r "${FILES}\guide"
    File /r "${FILES}\examples"
    File /r "${FILES}\licences"
    File /r "${FILES}\tools"
    WriteUninstaller "${OURS}\uninstall.exe"
    ${If} ${Errors}
        Call CannotWrite
    ${EndIf}

    WriteRegStr HKLM "${KEY}" "Folder" "$INSTDIR"
    !insertmacro KeyOfFolder $Key
    WriteRegStr HKLM "$Key" "DisplayName" "Tolvane ($INSTDIR)"
    WriteRegStr HKLM "$Key" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "$Key" "DisplayIcon" "${OURS}\uninstall.exe"
    WriteRegStr HKLM "$Key" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "$Key" "Publisher" "${PUBLISHER}"
    WriteRegStr HKLM "$Key" "UninstallString" '"${OURS}\uninstall.exe"'
    WriteRegStr HKLM "$Key" "QuietUninstallString" '"${OURS}\uninstall.exe" /S'
    WriteRegDWORD HKLM "$Key" "NoModify" 1
    WriteRegDWORD HKLM "$Key" "NoRepair" 1
SectionEnd

Section "$(TextPrograms)" SectionPrograms
    SetOutPath "${OURS}"
    ClearErrors
    File "${FILES}\tolvane.exe"
    File "${FILES}\virtual-scale.exe"
    ${If} ${Errors}
        Call CannotWrite
    ${EndIf}
SectionEnd

Function un.onInit
    !insertmacro MUI_UNGETLANGUAGE
    ; The uninstaller lies in our folder.
    ${GetParent} "$INSTDIR" $INSTDIR
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/SETTINGS" $1
    ${IfNot} ${Errors}
        Call un.SelectSettings
    ${EndIf}
FunctionEnd

Section "un.$(TextModule)"
    SectionIn RO
    Call un.NeedFree
    ReadINIStr $MadeOperations "${RECORD}" "Before" "MadeOperations"
    !insertmacro PutBack "$INSTDIR\Operations\Tolvane.dll" "Tolvane.dll"
    Delete "$INSTDIR\Operations\Tolvane.dll.new"
    Delete "$INSTDIR\Operations\Tolvane.dll.old"
    RMDir /r "${OURS}\guide"
    RMDir /r "${OURS}\examples"
    RMDir /r "${OURS}\licences"
    RMDir /r "${OURS}\tools"
    RMDir "${OURS}\before"
    Delete "${OURS}\README.txt"
    Delete "${OURS}\LICENSE.txt"
    Delete "${OURS}\CHANGELOG.md"
    Delete "${OURS}\tolvane.exe"
    Delete "${OURS}\virtual-scale.exe"
    Delete "${RECORD}"
    Delete "${OURS}\uninstall.exe"
    SetOutPath "$TEMP"
    RMDir "${OURS}"
    !insertmacro KeyOfFolder $Key
    DeleteRegKey HKLM "$Key"
    ReadRegStr $0 HKLM "${KEY}" "Folder"
    ${If} $0 == $INSTDIR
        DeleteRegKey HKLM "${KEY}"
    ${EndIf}
SectionEnd

Section /o "un.$(TextSettings)" SectionSettings
    Delete "${INI}"
    Delete "${INI}.tolvane-*.tmp"
SectionEnd

; After the settings: a folder with something in it stays.
Section -un.Folder
    ${If} $MadeOperations = 1
        RMDir "$INSTDIR\Operations"
    ${EndIf}
SectionEnd

Function un.SelectSettings
    !insertmacro SelectSection ${SectionSettings}
FunctionEnd
