include(CMakeParseArguments)

# Warnings of our own code are errors on both targets.
add_library(tolvane_warnings INTERFACE)
# GCC 12 sees overlaps that are not there in "x" + std::to_string(n).
target_compile_options(tolvane_warnings INTERFACE -Wall -Wextra -Wshadow -Wconversion -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(CMAKE_UNITY_BUILD)
    # Where GCC 12 sees many files at once, it warns of more that is not there. The other builds stop at
    # every warning.
    target_compile_options(tolvane_warnings INTERFACE -Wno-error)
endif()

# tolvane_precompiled(<name> <header>): precompiles the header, for other targets to reuse.
function(tolvane_precompiled name header)
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    target_precompile_headers(${name} PRIVATE ${header})
endfunction()

# The builds that test.sh makes take the standard library precompiled. Whether each file includes what it
# needs is shown by clang-tidy with CI=true, which reads every file by itself and without that.
if(TOLVANE_SANITIZE OR (WIN32 AND BUILD_TESTING))
    set(TOLVANE_PRECOMPILE ON)
    tolvane_precompiled(tolvane_standard_headers ${PROJECT_SOURCE_DIR}/tests/support/StandardHeaders.h)
    target_link_libraries(tolvane_standard_headers PRIVATE tolvane_hardening)
endif()

# tolvane_library(<name> [ALONE] [FAST] SOURCES <files> LINKS <targets>): one folder's code. LINKS names what
# the folder may use, and nothing else is on its link line. Compiled in batches, as most of the time goes into
# headers that the files share; ALONE is for windows, each of which has sizes of its own under the same names.
# FAST is for what works on whole lists: the module, which is otherwise built small, has it optimised for speed.
function(tolvane_library name)
    cmake_parse_arguments(arg "ALONE;FAST" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE tolvane_warnings tolvane_hardening)
    if(NOT arg_ALONE)
        set_target_properties(${name} PROPERTIES UNITY_BUILD ${TOLVANE_BATCHES} UNITY_BUILD_BATCH_SIZE 8)
    endif()
    if(arg_FAST AND WIN32)
        # The precompiled headers are for files that are built small.
        target_compile_options(${name} PRIVATE -O2)
    elseif(TOLVANE_PRECOMPILE)
        target_precompile_headers(${name} REUSE_FROM tolvane_standard_headers)
    endif()
endfunction()

# tolvane_program(<name> SOURCES <files> LINKS <targets>)
function(tolvane_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} tolvane_warnings)
endfunction()

# tolvane_version(<name> <description>): for Windows, the file's version resource.
function(tolvane_version name description)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(kind ${name} TYPE)
    if(kind STREQUAL SHARED_LIBRARY)
        set(type 0x2)
        set(extension .dll)
    else()
        set(type 0x1)
        set(extension .exe)
    endif()
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${name}Version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${resource} @ONLY)
    target_sources(${name} PRIVATE ${resource})
endfunction()

# Tests are compiled so that building them is quick. A failed test names its own line, so nobody needs debug
# information; of the sanitizers only the one that watches memory stays. Objects for Windows keep each
# inline function in a section of its own, and the linker walks all symbols for each section: without any
# optimisation there are ten times as many, and linking takes longer than compiling.
if(WIN32)
    set(TOLVANE_QUICK_BUILD -Og -g0 -fno-function-sections -fno-data-sections)
else()
    set(TOLVANE_QUICK_BUILD -O0 -g0)
endif()
add_library(tolvane_test_flags INTERFACE)
target_compile_options(tolvane_test_flags INTERFACE ${TOLVANE_QUICK_BUILD} ${TOLVANE_WITHOUT_UBSAN})
if(NOT WIN32)
    # Precompiled headers are shared only among files that agree on this.
    target_compile_options(tolvane_test_flags INTERFACE -fPIE)
endif()

# tolvane_test_headers(<name> <header> [target]...): precompiles the header for tests; the targets provide
# what it includes.
function(tolvane_test_headers name header)
    tolvane_precompiled(${name} ${header})
    target_link_libraries(${name} PRIVATE tolvane_test_flags GTest::gtest ${ARGN})
endfunction()

# tolvane_compile_as_test(<name> test|link_test|window_test): compiles the target as a test, with one of the
# precompiled headers of tests/support.
function(tolvane_compile_as_test name headers)
    target_link_libraries(${name} PRIVATE tolvane_test_flags tolvane_warnings GTest::gtest)
    target_precompile_headers(${name} REUSE_FROM tolvane_${headers}_headers)
    # In batches: most of the time goes into templates that a program's files share. GCC then takes the
    # anonymous namespace of each file for one in a header, and warns of it.
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 6)
    target_compile_options(${name} PRIVATE -Wno-subobject-linkage)
endfunction()

# tolvane_test_library(<name> [HEADERS link_test|window_test] SOURCES <files> LINKS <targets>): what
# several test programs share.
function(tolvane_test_library name)
    cmake_parse_arguments(arg "" "HEADERS" "SOURCES;LINKS" HEADERS test ${ARGN})
    add_library(${name} STATIC EXCLUDE_FROM_ALL ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${arg_LINKS})
    tolvane_compile_as_test(${name} ${arg_HEADERS})
endfunction()

# tolvane_test(<name> LEVEL unit|integration|command|module [HEADERS link_test|window_test] SOURCES <files>
# LINKS <targets>): one test program. Unit and integration tests run natively under ctest; module tests
# are Windows programs that the test script runs under Wine.
function(tolvane_test name)
    cmake_parse_arguments(arg "" "LEVEL;HEADERS" "SOURCES;LINKS" HEADERS test ${ARGN})
    tolvane_program(${name} SOURCES ${arg_SOURCES} LINKS ${arg_LINKS} GTest::gtest_main)
    tolvane_compile_as_test(${name} ${arg_HEADERS})
    if(NOT WIN32)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES LABELS ${arg_LEVEL} TIMEOUT 600)
    endif()
endfunction()

# tolvane_bench(<name> SOURCES <files> LINKS <targets>): a program that measures. What it measures is
# meaningful in the release build; the build with sanitizers only shows that it compiles, as quickly as
# it does tests.
function(tolvane_bench name)
    tolvane_program(${name} ${ARGN})
    if(NOT TARGET benchmarks)
        add_custom_target(benchmarks)
    endif()
    add_dependencies(benchmarks ${name})
    if(TOLVANE_SANITIZE)
        target_link_libraries(${name} PRIVATE tolvane_test_flags)
    endif()
endfunction()

# tolvane_add_folders(): each folder of the current one that has a CMakeLists.txt.
function(tolvane_add_folders)
    file(GLOB lists CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
    foreach(list IN LISTS lists)
        get_filename_component(folder ${list} DIRECTORY)
        add_subdirectory(${folder})
    endforeach()
endfunction()
