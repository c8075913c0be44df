# How shared libraries are named, found and cut to their exports on Linux.

# Every library finds its neighbours in the folder where it stands.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_BUILD_RPATH "$ORIGIN")
add_link_options(-Wl,--enable-new-dtags)

# The file name is the soname.
function(tesmark_file_name target name)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name})
endfunction()

function(tesmark_export_only target)
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.ver)
    list(JOIN ARGN "$<SEMICOLON>\n    " names)
    file(GENERATE OUTPUT ${script} CONTENT "{\n  global:\n    ${names}$<SEMICOLON>
  local:\n    *$<SEMICOLON>\n}$<SEMICOLON>\n")
    target_link_options(${target} PRIVATE -Wl,--version-script=${script} -Wl,--no-undefined)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${script})
endfunction()

# tesmark_link_closed(<target> <name> <header>)
# Links a library by the name of its file and the functions of its header, without the file itself:
# an empty library takes its place at the link. So the closed libraries need not be there at build
# time, and a name that is not theirs is an error of the build. Nothing is ever run from the folder
# of these. A library that nothing is called from is not needed afterwards.
function(tesmark_link_closed target name header)
    tesmark_declared_functions(${header} functions)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/imports)
    list(TRANSFORM functions REPLACE "(.+)" "void \\1(void) {}\n")
    list(JOIN functions "" source)
    file(GENERATE OUTPUT ${folder}/${name}.c CONTENT "${source}")
    add_library(import_${name} SHARED ${folder}/${name}.c)
    set_target_properties(import_${name} PROPERTIES
        OUTPUT_NAME ${name} C_VISIBILITY_PRESET default LIBRARY_OUTPUT_DIRECTORY ${folder})
    add_dependencies(${target} import_${name})
    target_link_libraries(${target} PRIVATE -l${name})
    target_link_options(${target}
        PRIVATE -L${folder} -Wl,--as-needed INTERFACE -Wl,-rpath-link,${folder})
endfunction()
