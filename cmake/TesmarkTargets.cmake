# What every target of the project is built with.

option(TESMARK_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

# Sources are UTF-8; the narrow text of the running system is GBK, literals included.
add_library(tesmark_options INTERFACE)
target_compile_options(tesmark_options INTERFACE
    -finput-charset=UTF-8 -fexec-charset=GBK
    -Wall -Wextra -Werror -Wformat=2
    -fstack-protector-strong -gdwarf-4
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

# A shared library that stands behind one of the closed interfaces: the file name is the soname,
# and it exports the interface's names and nothing else.
#   tesmark_closed_library(<target> <file name without prefix and suffix> <version script>)
function(tesmark_closed_library target name exports)
    add_library(${target} SHARED)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} LINK_DEPENDS ${exports})
    target_link_options(${target} PRIVATE
        -Wl,--version-script=${exports} -Wl,--no-undefined)
    target_link_libraries(${target} PRIVATE tesmark_options)
endfunction()

# Part of every build, since it costs less than compiling one file.
add_custom_target(tesmark_layers ALL
    COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR}
            -P ${PROJECT_SOURCE_DIR}/cmake/CheckLayers.cmake
    COMMENT "Checking that no include goes up" VERBATIM)
