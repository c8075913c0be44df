# How DLLs are named, built and cut to their exports.

include(WindowsThirdParty)

add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601)
# The same bytes from the same sources (an address at which a DLL is to be loaded would be made of
# the folder's name), and what the system offers against attacks.
add_link_options(-Wl,--no-insert-timestamp -Wl,--disable-auto-image-base -Wl,--dynamicbase
    -Wl,--nxcompat -Wl,--high-entropy-va -fstack-protector-strong)

# The name of the file is that of its interface; the transport's begins with "lib" here too.
function(tesmark_dll_prefix name result)
    set(${result} "" PARENT_SCOPE)
    if(name MATCHES "^dwnt")
        set(${result} lib PARENT_SCOPE)
    endif()
endfunction()

function(tesmark_file_name target name)
    tesmark_dll_prefix(${name} prefix)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${name} PREFIX "${prefix}" IMPORT_PREFIX lib${target}-)
endfunction()

function(tesmark_export_only target)
    set(definition ${CMAKE_CURRENT_BINARY_DIR}/${target}.def)
    list(JOIN ARGN "\n    " names)
    file(GENERATE OUTPUT ${definition}
        CONTENT "LIBRARY \"$<TARGET_FILE_NAME:${target}>\"\nEXPORTS\n    ${names}\n")
    target_sources(${target} PRIVATE ${definition}
        ${PROJECT_SOURCE_DIR}/src/platform/windows/ExceptionPool.cpp)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${definition})
endfunction()

# tesmark_link_closed(<target> <name> <header>)
# Links a library by the name of its file and the functions of its header, without the file itself.
# So the closed libraries need not be there at build time, and a name that is not theirs is an
# error of the build. A library that nothing is called from is not needed afterwards.
function(tesmark_link_closed target name header)
    tesmark_declared_functions(${header} functions)
    tesmark_dll_prefix(${name} prefix)
    set(definition ${CMAKE_CURRENT_BINARY_DIR}/imports/${name}.def)
    set(import ${CMAKE_CURRENT_BINARY_DIR}/imports/lib${name}.dll.a)
    list(JOIN functions "\n    " names)
    file(GENERATE OUTPUT ${definition} CONTENT "LIBRARY \"${prefix}${name}.dll\"\nEXPORTS\n    ${names}\n")
    # The names of its members, which order the import table, would else be made of the folder's.
    add_custom_command(OUTPUT ${import}
        COMMAND ${CMAKE_DLLTOOL} -m i386:x86-64 -d ${definition} -l ${import}
                --temp-prefix ${name} --deterministic-libraries
        DEPENDS ${definition} VERBATIM)
    add_custom_target(import_${name} DEPENDS ${import})
    add_dependencies(${target} import_${name})
    target_link_libraries(${target} PRIVATE ${import})
endfunction()
