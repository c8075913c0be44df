# Fails if a product's source reads PEM without a callback for the pass phrase: OpenSSL would ask on
# the terminal and wait.
#   cmake -DROOT=<checkout> -P CheckPassPhrases.cmake
foreach(folder src components tools)
    file(GLOB_RECURSE found ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp)
    list(APPEND sources ${found})
endforeach()

set(report)
foreach(source IN LISTS sources)
    file(READ ${source} text)
    string(REGEX MATCHALL "PEM_(bytes_)?read_[A-Za-z0-9_]+\\([^;]*(nullptr|NULL)[ \n]*,[ \n]*(nullptr|NULL)[ \n]*\\)"
        calls "${text}")
    foreach(call IN LISTS calls)
        string(APPEND report "${source}: ${call}\n")
    endforeach()
endforeach()
if(report)
    message(FATAL_ERROR "PEM is read without NoPassPhrase (components/crypto/PassPhrase.h):\n${report}")
endif()
list(LENGTH sources count)
message(STATUS "${count} sources ask for no pass phrase")
