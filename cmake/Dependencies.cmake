# Header-only libraries are reached through a folder of links, so that a cross build never sees the
# rest of the system's headers.
set(TOLVANE_HEADERS ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${TOLVANE_HEADERS})
foreach(entry asio asio.hpp nlohmann CLI ibase.h iberror.h firebird)
    if(NOT EXISTS /usr/include/${entry})
        message(FATAL_ERROR "/usr/include/${entry} is missing; scripts/packages.sh installs it")
    endif()
    file(CREATE_LINK /usr/include/${entry} ${TOLVANE_HEADERS}/${entry} SYMBOLIC)
endforeach()

add_library(tolvane_headers INTERFACE)
target_include_directories(tolvane_headers SYSTEM INTERFACE ${TOLVANE_HEADERS})

find_package(Threads REQUIRED)
add_library(tolvane_asio INTERFACE)
target_link_libraries(tolvane_asio INTERFACE tolvane_headers Threads::Threads)
# Without the last of these, whether Asio frees what it allocated with free or with delete depends on the
# headers that a file includes before it.
target_compile_definitions(tolvane_asio INTERFACE
    ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_DISABLE_STD_ALIGNED_ALLOC)
if(WIN32)
    target_link_libraries(tolvane_asio INTERFACE ws2_32 mswsock)
    # The same for the kind of its threads: with two kinds in one program a thread of the one is taken
    # for a joined one of the other, and goes on in memory that has been freed.
    target_compile_definitions(tolvane_asio INTERFACE ASIO_HAS_THREADS=1 ASIO_HAS_PTHREADS=1)
endif()

# GoogleTest is built from its source package for both targets, with the tests' flags.
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
if(BUILD_TESTING)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    foreach(part gtest gtest_main)
        target_link_libraries(${part} PRIVATE tolvane_test_flags)
    endforeach()
endif()
