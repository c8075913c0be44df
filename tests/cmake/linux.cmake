# GoogleTest as the system has it, and test programs run as they are.
find_package(GTest REQUIRED)

# No test shows its dialogs to whoever runs it.
add_library(tesmark_unattended OBJECT ${CMAKE_CURRENT_SOURCE_DIR}/support/linux/Unattended.cpp)
target_link_libraries(tesmark_unattended PRIVATE tesmark_options)
set(TESMARK_TEST_OBJECTS $<TARGET_OBJECTS:tesmark_unattended>)

# tesmark_find_libraries_in(<target> <folder>...)
# Shared libraries are looked for in these folders, in their order.
function(tesmark_find_libraries_in target)
    string(REPLACE "${CMAKE_BINARY_DIR}/" "$ORIGIN/../" folders "${ARGN}")
    set_target_properties(${target} PROPERTIES BUILD_RPATH "${folders}")
endfunction()
