# cmake -DTARGET=<program> -DFOLDER=<scratch folder> -P SelfTest.cmake
# The driver finds the fault, keeps the input, and the input alone shows the fault again.
file(REMOVE_RECURSE ${FOLDER})
file(WRITE ${FOLDER}/seeds/one "abcd")
set(crash ${FOLDER}/crash)

execute_process(COMMAND ${TARGET} -crash ${crash} ${FOLDER}/seeds RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR EXISTS ${crash})
    message(FATAL_ERROR "the seed alone: ${result}")
endif()

execute_process(COMMAND ${TARGET} -seconds 30 -crash ${crash} ${FOLDER}/seeds
    RESULT_VARIABLE result ERROR_QUIET)
if(result EQUAL 0 OR NOT EXISTS ${crash})
    message(FATAL_ERROR "mutations: ${result}")
endif()

execute_process(COMMAND ${TARGET} ${crash} RESULT_VARIABLE result ERROR_QUIET)
if(result EQUAL 0)
    message(FATAL_ERROR "the kept input shows nothing")
endif()

execute_process(COMMAND ${TARGET} ${FOLDER}/none RESULT_VARIABLE result ERROR_QUIET)
if(NOT result EQUAL 2)
    message(FATAL_ERROR "a missing input: ${result}")
endif()
file(REMOVE_RECURSE ${FOLDER})
