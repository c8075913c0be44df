# Fails if clang-format would change a source.
#   cmake -DROOT=<checkout> -P CheckFormat.cmake
foreach(folder include src components tools tests bench fuzz examples)
    file(GLOB_RECURSE found ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp ${ROOT}/${folder}/*.c)
    list(APPEND sources ${found})
endforeach()
execute_process(COMMAND clang-format --dry-run -Werror --style=file ${sources}
    RESULT_VARIABLE result ERROR_VARIABLE report)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "clang-format: ${result}\n${report}")
endif()
list(LENGTH sources count)
message(STATUS "${count} sources are formatted")
