# How all that is given to others is compiled: an overwritten stack ends the process, and no path of the machine
# that builds is left in a file. Sanitizers find more by themselves, and counting what tests cover needs the paths.
add_library(tolvane_hardening INTERFACE)
if(CMAKE_BUILD_TYPE STREQUAL Release)
    set(TOLVANE_HARDEN ON)
endif()
if(TOLVANE_HARDEN)
    target_compile_options(tolvane_hardening INTERFACE -fstack-protector-strong
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
    if(WIN32)
        target_link_libraries(tolvane_hardening INTERFACE tolvane_stack_guard)
    else()
        # It needs an optimising compiler.
        target_compile_options(tolvane_hardening INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
endif()

# tolvane_shipped(<name>): a program or module that is given to others. To be called when the target is complete.
# scripts/check-binary.sh checks the file, with the map that the linker leaves in the build folder; the map also tells
# what has been linked in. The same sources make the same bytes, wherever and whenever they are built.
function(tolvane_shipped name)
    target_link_libraries(${name} PRIVATE tolvane_hardening)
    if(NOT TOLVANE_HARDEN)
        return()
    endif()
    target_link_options(${name} PRIVATE -s LINKER:-Map=${PROJECT_BINARY_DIR}/${name}.map LINKER:--cref)
    if(NOT WIN32)
        target_link_options(${name} PRIVATE -pie LINKER:-z,relro,-z,now,-z,noexecstack)
        return()
    endif()
    get_target_property(windowed ${name} WIN32_EXECUTABLE)
    get_target_property(type ${name} TYPE)
    set(subsystem console)
    if(type STREQUAL SHARED_LIBRARY)
        # Otherwise it depends on the name of the output.
        target_link_options(${name} PRIVATE LINKER:--image-base,0x70100000)
    endif()
    if(windowed OR type STREQUAL SHARED_LIBRARY)
        set(subsystem windows)
    endif()
    # For Windows 7 and later, without the time of the build.
    target_link_options(${name} PRIVATE LINKER:--subsystem,${subsystem}:6.1
        LINKER:--major-os-version,6,--minor-os-version,1
        LINKER:--dynamicbase,--nxcompat,--no-insert-timestamp)
endfunction()
