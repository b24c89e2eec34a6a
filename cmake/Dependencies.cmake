# Header-only libraries are reached through a folder of links, so that a cross build never sees the
# rest of the system's headers.
set(TOLVANE_HEADERS ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${TOLVANE_HEADERS})
foreach(entry asio asio.hpp boost nlohmann CLI ibase.h iberror.h firebird)
    if(NOT EXISTS /usr/include/${entry})
        message(FATAL_ERROR "/usr/include/${entry} is missing; scripts/packages.sh installs it")
    endif()
    file(CREATE_LINK /usr/include/${entry} ${TOLVANE_HEADERS}/${entry} SYMBOLIC)
endforeach()

add_library(tolvane_headers INTERFACE)
target_include_directories(tolvane_headers SYSTEM INTERFACE ${TOLVANE_HEADERS})

find_package(Threads REQUIRED)
if(WIN32)
    # Each object that uses Asio contains its code. From one object with all of it the module would keep
    # parts that nobody uses.
    set(scope INTERFACE)
    add_library(tolvane_asio INTERFACE)
    # In a program with two kinds of threads, one kind takes a thread of the other for joined; that thread
    # then goes on in memory that has been freed. Unless it is set here, the kind depends on the headers
    # that a file includes before Asio's.
    target_compile_definitions(tolvane_asio INTERFACE ASIO_HAS_THREADS=1 ASIO_HAS_PTHREADS=1)
    target_link_libraries(tolvane_asio INTERFACE ws2_32 mswsock)
else()
    # Compiled once, and not in every file that includes it.
    set(scope PUBLIC)
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/AsioCode.cpp CONTENT "#include <asio/impl/src.hpp>\n")
    add_library(tolvane_asio STATIC ${CMAKE_BINARY_DIR}/AsioCode.cpp)
    target_compile_definitions(tolvane_asio PUBLIC ASIO_SEPARATE_COMPILATION)
    target_link_libraries(tolvane_asio PRIVATE tolvane_hardening)
    if(TOLVANE_SANITIZE)
        # Tests do not need it quick.
        target_compile_options(tolvane_asio PRIVATE ${TOLVANE_QUICK_BUILD} ${TOLVANE_WITHOUT_UBSAN})
    endif()
endif()
target_link_libraries(tolvane_asio ${scope} tolvane_headers Threads::Threads)
# Without the last of these it depends on the headers that a file includes before Asio's whether Asio frees
# with free or with delete what it has allocated.
target_compile_definitions(tolvane_asio ${scope}
    ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_DISABLE_STD_ALIGNED_ALLOC)

# GoogleTest: for this system Debian has built it; for Windows it is built from its source package, with the
# tests' flags.
if(BUILD_TESTING AND WIN32)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    foreach(part gtest gtest_main)
        target_link_libraries(${part} PRIVATE tolvane_test_flags)
    endforeach()
elseif(BUILD_TESTING)
    find_package(GTest REQUIRED)
endif()
