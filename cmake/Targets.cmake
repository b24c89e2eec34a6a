include(CMakeParseArguments)

# Warnings of our own code are errors on both targets.
add_library(tolvane_warnings INTERFACE)
# GCC 12 sees overlaps that are not there in "x" + std::to_string(n).
target_compile_options(tolvane_warnings INTERFACE -Wall -Wextra -Wshadow -Wconversion -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# tolvane_library(<name> SOURCES <files> LINKS <targets>): one folder's code. LINKS names what the
# folder may use, and nothing else is on its link line.
function(tolvane_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE tolvane_warnings)
endfunction()

# tolvane_program(<name> SOURCES <files> LINKS <targets>)
function(tolvane_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} tolvane_warnings)
endfunction()

# tolvane_test(<name> LEVEL unit|integration|module SOURCES <files> LINKS <targets>): one test
# program. Unit and integration tests run natively under ctest; module tests are Windows programs
# that the test script runs under Wine.
function(tolvane_test name)
    cmake_parse_arguments(arg "" "LEVEL" "SOURCES;LINKS" ${ARGN})
    tolvane_program(${name} SOURCES ${arg_SOURCES} LINKS ${arg_LINKS} GTest::gtest_main)
    if(NOT WIN32)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES LABELS ${arg_LEVEL} TIMEOUT 600)
    endif()
endfunction()
