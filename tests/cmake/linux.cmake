# GoogleTest as the system has it, and test programs run as they are.
find_package(GTest REQUIRED)

# tesmark_find_libraries_in(<target> <folder>...)
# Shared libraries are looked for in these folders, in their order.
function(tesmark_find_libraries_in target)
    string(REPLACE "${CMAKE_BINARY_DIR}/" "$ORIGIN/../" folders "${ARGN}")
    set_target_properties(${target} PROPERTIES BUILD_RPATH "${folders}")
endfunction()
