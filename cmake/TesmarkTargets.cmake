# What every target of the project is built with, and the two kinds of shared library.

option(TESMARK_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

# Where one header has two bodies, they stand in folders of these names.
if(WIN32)
    set(TESMARK_PLATFORM windows)
else()
    set(TESMARK_PLATFORM linux)
endif()

# Sources are UTF-8; the narrow text of the running system is GBK, literals included.
add_library(tesmark_options INTERFACE)
target_compile_options(tesmark_options INTERFACE
    -finput-charset=UTF-8 -fexec-charset=GBK
    -Wall -Wextra -Werror -Wformat=2
    -fstack-protector-strong -gdwarf-4 $<$<BOOL:${TESMARK_SANITIZE}>:-g1>
    -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
target_compile_definitions(tesmark_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>
    $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

if(TESMARK_SANITIZE)
    set(TESMARK_SANITIZERS -fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    # Instrumented code of the standard library looks uninitialised to GCC where it is not.
    add_compile_options(${TESMARK_SANITIZERS} -O1 -Wno-maybe-uninitialized)
    add_link_options(${TESMARK_SANITIZERS})
endif()

include(platform/${TESMARK_PLATFORM})

# The names of the functions that a header of the closed interfaces declares.
set(TESMARK_CLOSED_HEADERS ${CMAKE_SOURCE_DIR}/src/platform/closed)
function(tesmark_declared_functions header result)
    set(path ${TESMARK_CLOSED_HEADERS}/${header})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${path})
    file(READ ${path} text)
    string(REGEX MATCHALL "\nint [A-Za-z0-9_]+" functions "${text}")
    list(TRANSFORM functions REPLACE ".* (.*)" "\\1")
    set(${result} ${functions} PARENT_SCOPE)
endfunction()

# A shared library that stands behind one of the closed interfaces: it exports the functions of the
# interface's header and nothing else.
#   tesmark_closed_library(<target> <file name without prefix and suffix> <header>)
function(tesmark_closed_library target name header)
    add_library(${target} SHARED)
    tesmark_file_name(${target} ${name})
    tesmark_declared_functions(${header} functions)
    tesmark_export_only(${target} ${functions})
    # What is let out has to be visible first.
    set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET default)
    target_link_libraries(${target} PRIVATE tesmark_options)
endfunction()

# Part of every build, since it costs less than compiling one file.
add_custom_target(tesmark_layers ALL
    COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR}
            -P ${PROJECT_SOURCE_DIR}/cmake/CheckLayers.cmake
    COMMENT "Checking that no include goes up" VERBATIM)
