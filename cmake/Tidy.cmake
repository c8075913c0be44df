# Runs clang-tidy over sources of a configured build folder.
#   cmake -S . -B build/linux -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
#   cmake -DBUILD=build/linux "-DSOURCES=src/bridge/*.cpp" -P cmake/Tidy.cmake
file(READ ${BUILD}/compile_commands.json commands)
foreach(flag -fexec-charset=GBK -finput-charset=UTF-8 -Wno-maybe-uninitialized)
    string(REPLACE "${flag}" "" commands "${commands}")
endforeach()
file(WRITE ${BUILD}/tidy/compile_commands.json "${commands}")
file(GLOB sources ${SOURCES})
execute_process(COMMAND clang-tidy -p ${BUILD}/tidy --quiet ${sources} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "clang-tidy: ${result}")
endif()
