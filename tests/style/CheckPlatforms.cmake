# Fails on a platform conditional, or a header of Windows in a shared header, outside the folders
# that are a platform's own.
#   cmake -DROOT=<checkout> -P CheckPlatforms.cmake
foreach(folder include src components tools tests bench fuzz examples)
    file(GLOB_RECURSE found ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp ${ROOT}/${folder}/*.c)
    list(APPEND sources ${found})
endforeach()
list(FILTER sources EXCLUDE REGEX "/(linux|windows|wine)/[^/]*$")

set(report)
foreach(source IN LISTS sources)
    file(STRINGS ${source} conditionals
        REGEX "^[ \t]*#[ \t]*(if|elif).*(WIN32|_WIN64|__MINGW|_MSC_VER|__linux|__unix|__CYGWIN)")
    set(headers)
    if(source MATCHES "\\.h$")
        file(STRINGS ${source} headers REGEX
            "^[ \t]*#[ \t]*include[ \t]*<(windows|winsock2|shlobj|shlwapi|objbase|oleauto|unistd|dlfcn|sys/.*)\\.h>")
    endif()
    foreach(line IN LISTS conditionals headers)
        string(APPEND report "${source}: ${line}\n")
    endforeach()
endforeach()
if(report)
    message(FATAL_ERROR "A platform shows in shared code:\n${report}")
endif()
list(LENGTH sources count)
message(STATUS "${count} sources know no platform")
