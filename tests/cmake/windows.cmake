# GoogleTest built from its sources, and test programs run under Wine.
set(INSTALL_GTEST OFF CACHE BOOL "")
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

set(TESMARK_WINE_STATE ${CMAKE_BINARY_DIR}/wine)
set(TESMARK_WINE_RUN ${CMAKE_CURRENT_SOURCE_DIR}/wine/run ${TESMARK_WINE_STATE})
set(CMAKE_CROSSCOMPILING_EMULATOR ${TESMARK_WINE_RUN})
set(TESMARK_TEST_PROPERTIES FIXTURES_REQUIRED wine)
add_subdirectory(wine)

# tesmark_find_libraries_in(<target> <folder>...)
# DLLs are looked for in these folders, in their order, behind the program's own.
function(tesmark_find_libraries_in target)
    list(JOIN ARGN ":" folders)
    set_target_properties(${target} PROPERTIES
        CROSSCOMPILING_EMULATOR "${TESMARK_WINE_RUN};--dll-path;${folders}")
endfunction()
