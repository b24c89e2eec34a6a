#!/usr/bin/env bash
# Builds small modules and programs, each with one fault, and expects the check of built files to name it.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cxx=i686-w64-mingw32-g++-posix
version=$(sed -nE 's/^project\(Tolvane VERSION ([0-9.]+) .*$/\1/p' "$root/CMakeLists.txt")
cd "$tree"
export TOLVANE_BUILD=$tree

cat >module.cpp <<'CODE'
#include <windows.h>
#include <cstdio>
#define EXPORTED extern "C" __declspec(dllexport)
EXPORTED int GetOperationTitle(const char* text) { char buffer[40]; return std::sprintf(buffer, "%s", text); }
EXPORTED void OperationProcedure() {}
EXPORTED void SetTQ4ModuleString() {}
#ifdef FIFTH
EXPORTED void Fifth() {}
#endif
#ifdef BARE
void LoadBare() { LoadLibraryA("planted.dll"); }
#endif
#ifdef PATHS
EXPORTED const wchar_t* GetOperationType() { return L"" PATHS; }
#else
EXPORTED void GetOperationType() {}
#endif
#ifdef PART
int Part();
int CallPart() { return Part(); }
#endif
#ifdef GLOBAL
struct TGlobal { TGlobal() { GLOBAL; } } global;
#endif
#ifdef CALLBACK_OF_LOADER
static void NTAPI Called(void*, DWORD, void*) {}
__attribute__((section(".CRT$XLB"), used)) PIMAGE_TLS_CALLBACK callback = &Called;
#endif
#ifdef BOTH_SECTION
asm(".section .both,\"wx\"\n.byte 0xc3\n.text");
#endif
#ifdef OTHER_DLL
extern "C" __declspec(dllimport) void Other();
void CallOther() { Other(); }
#endif
CODE
cat >program.cpp <<'CODE'
#include <cstdio>
#ifdef BOTH_SECTION
asm(".section .both,\"awx\",@progbits\n.byte 0xc3\n.text");
#endif
int main(int count, char** words) {
    char text[9];
    return std::snprintf(text, sizeof text, words[1]) + count;
}
CODE
printf 'extern "C" __declspec(dllexport) void Other() {}\n' >other.cpp
printf 'extern const char* const kWhere; const char* const kWhere = "%s/a.cpp";\n' "$root" >where.h
resource() { # version
    printf '1 VERSIONINFO\nBEGIN\nBLOCK "StringFileInfo"\nBEGIN\nBLOCK "040204B0"\nBEGIN\nVALUE "FileVersion", "%s"\nEND\nEND\nEND\n' "$1" |
        i686-w64-mingw32-windres -o "$2"
}
resource "$version" version.o
resource 0.0.1 old.o
"$cxx" -Os -c "$root/src/system/StackGuard_win32.cpp" -o guard.o
"$cxx" -shared other.cpp -o other.dll

# build <file> <flag>...: of contrary flags the last one counts.
build() {
    local file=$1
    shift
    "$cxx" -Os -fstack-protector-strong -static -s -Wl,--subsystem,windows:6.1 -Wl,--major-os-version,6 \
        -Wl,--minor-os-version,1 -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-insert-timestamp -Wl,--cref \
        "-Wl,-Map=${file%.*}.map" -o "$file" ${guard-guard.o} "$@"
}

check() { # title, file, words of the complaint ("" for none)
    run "$root/scripts/check-binary.sh" "$tree" "$2"
    expect "$1" "$([ -z "$3" ] && echo 0 || echo 1) *$3*" "$code $out"
}

# expect_module <title> <words of the complaint> <flag>...
expect_module() {
    "$cxx" -Os -fstack-protector-strong -c module.cpp -o module.o "${@:3}"
    build Tolvane.dll -shared module.o version.o "${@:3}"
    check "$1" Tolvane.dll "$2"
}

expect_module "a good module passes" ""
expect_module "no random address" "cannot be loaded at a random address" -Wl,--disable-dynamicbase
expect_module "data can be executed" "lets data be executed" -Wl,--disable-nxcompat
expect_module "a section for data and code" "writable and executable" -DBOTH_SECTION
expect_module "a console program" "another subsystem" -Wl,--subsystem,console:6.1
expect_module "another Windows" "for Windows 4.0,6.1" -Wl,--major-os-version,4 -Wl,--minor-os-version,0
expect_module "a subsystem of another Windows" "for Windows 6.1,6.0" -Wl,--subsystem,windows:6.0
expect_module "the time of the build" "when it was built" -Wl,--insert-timestamp
expect_module "a fifth export" "must export exactly" -DFIFTH
expect_module "a DLL that is not the system's" "not other.dll" -DOTHER_DLL -Wl,other.dll
expect_module "a path of the sources" "where it was built: *$root/a.cpp" -DPATHS="\"$root/a.cpp\""
expect_module "a path of a home" "where it was built" -DPATHS='"/home/somebody/a.cpp"'
expect_module "nothing is protected" "uses the stack protector" -fno-stack-protector
expect_module "a library by its name alone" "loads a library in" -DBARE
expect_module "a harmless global object" "" -DGLOBAL='GetCurrentProcessId()'
expect_module "a global object that waits" "calls __imp__Sleep@4 when it is made" -DGLOBAL='Sleep(1)'
expect_module "a callback of the loader" "the loader calls" -DCALLBACK_OF_LOADER
"$cxx" -Os -fstack-protector-strong -c module.cpp -o module.o
# A library of ours that is compiled otherwise.
mkdir src
printf 'int Part() { return 1; }\n' >src/part.cpp
"$cxx" -Os -c src/part.cpp -o src/part.o
i686-w64-mingw32-ar rc src/libpart.a src/part.o
expect_module "a part without a stack protector" "parts without a stack protector" -DPART -Wl,src/libpart.a
"$cxx" -Os -fstack-protector-strong -c module.cpp -o module.o
guard= build Tolvane.dll -shared module.o version.o
check "the compiler's own stack protector, which loads libraries" Tolvane.dll "has a global object in *ssp.o"
build Tolvane.dll -shared module.o
check "no version" Tolvane.dll 'has the version ""'
build Tolvane.dll -shared module.o old.o
check "an old version" Tolvane.dll 'has the version "0.0.1"'
build Tolvane.dll -shared module.o version.o
head -c 2097152 /dev/zero >>Tolvane.dll
check "a module of more than 2 MiB" Tolvane.dll "is too large"
rm Tolvane.map
check "no map" Tolvane.dll "no map"

printf 'int main() { return 0; }\n' >empty.cpp
build tolvane.exe program.cpp version.o -Wl,--subsystem,console:6.1
check "a good program passes" tolvane.exe ""
build tolvane.exe program.cpp version.o -mwindows -Wl,--subsystem,windows:6.1
check "a program without a console" tolvane.exe "another subsystem"
manifest() { # version
    printf '<assemblyIdentity type="win32" name="Tolvane.TradeHost" version="%s"/>' "$1" >host.manifest
    printf '1 24 "host.manifest"\n' | i686-w64-mingw32-windres -o host.o
    build TradeHost.exe program.cpp version.o host.o -mwindows
}
manifest "$version.0"
check "a good program with a manifest passes" TradeHost.exe ""
manifest 0.0.1.0
check "a manifest of another version" TradeHost.exe "manifest of TradeHost.exe has another version than $version.0"
build tolvane.exe program.cpp version.o -Wl,--subsystem,console:6.1 -Wl,--disable-reloc-section
check "a program without relocations" tolvane.exe "has no relocations"
build tolvane.exe empty.cpp version.o -Wl,--subsystem,console:6.1
check "a program without a stack protector" tolvane.exe "uses the stack protector"

# expect_linux <title> <words of the complaint> <flag>...
expect_linux() {
    g++ -O2 -fstack-protector-strong -D_FORTIFY_SOURCE=2 -fPIE -pie -Wl,-z,relro,-z,now,-z,noexecstack \
        -Wl,-Map=tolvane.map -o tolvane program.cpp "${@:3}"
    check "$1" tolvane "$2"
}

expect_linux "a good program for Linux passes" ""
expect_linux "Linux: no random address" "cannot be loaded at a random address" -fno-PIE -no-pie
expect_linux "Linux: writable tables" "tables of addresses writable" -Wl,-z,norelro
expect_linux "Linux: tables that are filled later" "tables of addresses writable" -Wl,-z,lazy
expect_linux "Linux: the stack can be executed" "lets the stack be executed" -Wl,-z,execstack
expect_linux "Linux: memory for data and code" "writable and executable" -DBOTH_SECTION -Wl,--no-warn-rwx-segments
expect_linux "Linux: a folder of its own" "a folder of its own" -Wl,-rpath,/opt
expect_linux "Linux: no stack protector" "no stack protector" -fno-stack-protector
expect_linux "Linux: no known sizes" "knows the size" -U_FORTIFY_SOURCE
expect_linux "Linux: another library" "not libresolv.so.2" -Wl,--no-as-needed -lresolv
expect_linux "Linux: a path of the sources" "where it was built" -include where.h

expect_end
