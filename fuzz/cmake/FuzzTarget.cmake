# tesmark_fuzz(<name> SOURCES <file>... [LIBS <target>...])
# One fuzz program in build/<preset>/fuzz, of sources with LLVMFuzzerTestOneInput and the driver.
# Its seeds stand in fuzz/corpus/<name>. The test of that name runs them and then mutations of
# them for a short while: longer where the sanitizers look on.
add_library(tesmark_fuzz_driver STATIC ${PROJECT_SOURCE_DIR}/fuzz/driver/Driver.cpp
    ${PROJECT_SOURCE_DIR}/fuzz/driver/Mutator.cpp)
target_include_directories(tesmark_fuzz_driver PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(tesmark_fuzz_driver PRIVATE tesmark_options)

function(tesmark_fuzz name)
    cmake_parse_arguments(F "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(fuzz_${name} ${F_SOURCES})
    set_target_properties(fuzz_${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
    target_include_directories(fuzz_${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(fuzz_${name} PRIVATE tesmark_options tesmark_fuzz_driver ${F_LIBS})
    if(TESMARK_SANITIZE)
        set(seconds 3)
    else()
        set(seconds 1)
    endif()
    add_test(NAME fuzz.${name} COMMAND fuzz_${name} -seconds ${seconds} -seed 1
        -crash ${CMAKE_BINARY_DIR}/fuzz/${name}.crash ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
    set_tests_properties(fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 120
        ENVIRONMENT VELMORA_PREFIX=${CMAKE_BINARY_DIR}/fuzz/prefix)
endfunction()

add_executable(fuzz_selftest ${PROJECT_SOURCE_DIR}/fuzz/driver/SelfTest.cpp)
set_target_properties(fuzz_selftest PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
target_include_directories(fuzz_selftest PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(fuzz_selftest PRIVATE tesmark_options tesmark_fuzz_driver)
add_test(NAME fuzz.driver COMMAND ${CMAKE_COMMAND} -DTARGET=$<TARGET_FILE:fuzz_selftest>
    -DFOLDER=${CMAKE_CURRENT_BINARY_DIR}/selftest -P ${PROJECT_SOURCE_DIR}/fuzz/driver/SelfTest.cmake)
set_tests_properties(fuzz.driver PROPERTIES LABELS fuzz TIMEOUT 120)
