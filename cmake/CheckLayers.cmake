# Fails on an include that goes up: cmake -DROOT=<source folder> -P CheckLayers.cmake
#
# A folder of src/ includes only its own files and what stands below it; include/TesmarkOpt.h and
# the prototypes of the closed interfaces may be included from anywhere. Of src/ the tools take the
# foundation and the platform, and what stamps and signs takes no component behind a closed
# interface: it goes by the exports, as any host does.

set(order platform foundation include/Util service revocation bridge seal host/ModuleState dialogs
    session host)
# service and revocation stand side by side.
set(level_platform 0)
set(level_foundation 1)
set(level_include/Util 2)
set(level_service 3)
set(level_revocation 3)
set(level_bridge 4)
set(level_seal 5)
set(level_host/ModuleState 6)
set(level_dialogs 7)
set(level_session 8)
set(level_host 9)

# The layer of a path below src/, empty for what is no part of it.
function(layer_of path result)
    set(${result} "" PARENT_SCOPE)
    if(path MATCHES "^host/ModuleState")
        set(${result} host/ModuleState PARENT_SCOPE)
        return()
    endif()
    foreach(layer IN LISTS order)
        if(path MATCHES "^${layer}/")
            set(${result} ${layer} PARENT_SCOPE)
        endif()
    endforeach()
endfunction()

# The quoted includes of a file, without those that anything may include.
function(includes_of file result)
    file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    set(found)
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^[^\"]*\"([^\"]*)\".*$" "\\1" included "${line}")
        string(REGEX REPLACE "^src/" "" included "${included}")
        if(NOT included MATCHES "(^|/)TesmarkOpt\\.h$" AND NOT included MATCHES "^platform/closed/")
            list(APPEND found ${included})
        endif()
    endforeach()
    set(${result} ${found} PARENT_SCOPE)
endfunction()

set(faults)

file(GLOB_RECURSE sources RELATIVE ${ROOT}/src ${ROOT}/src/*.h ${ROOT}/src/*.cpp ${ROOT}/src/*.c)
foreach(source IN LISTS sources)
    layer_of(${source} own)
    if(own STREQUAL "")
        list(APPEND faults "src/${source}: its folder has no place in the order of layers")
        continue()
    endif()
    includes_of(${ROOT}/src/${source} included)
    foreach(header IN LISTS included)
        get_filename_component(folder ${source} DIRECTORY)
        if(EXISTS ${ROOT}/src/${folder}/${header})
            continue()
        endif()
        layer_of(${header} other)
        if(header MATCHES "^\\.\\./|/\\.\\./")
            list(APPEND faults "src/${source}: ${header} is told by \"..\"")
        elseif(other STREQUAL "")
            list(APPEND faults "src/${source}: ${header} is in no layer of src/")
        elseif(NOT other STREQUAL own AND NOT level_${other} LESS level_${own})
            list(APPEND faults "src/${source}: ${header} does not stand below ${own}")
        endif()
    endforeach()
endforeach()

file(GLOB_RECURSE sources RELATIVE ${ROOT} ${ROOT}/components/*.h ${ROOT}/components/*.cpp
    ${ROOT}/components/*.c)
foreach(source IN LISTS sources)
    includes_of(${ROOT}/${source} included)
    foreach(header IN LISTS included)
        get_filename_component(folder ${source} DIRECTORY)
        if(NOT EXISTS ${ROOT}/${folder}/${header} AND
           NOT header MATCHES "^(foundation|platform|components)/")
            list(APPEND faults "${source}: ${header} is neither foundation, platform nor component")
        endif()
    endforeach()
endforeach()

set(closed certservice|personalseal|seallibrary|sealpicture|timestamp|transport)
set(stamping ContentPicture|DrawingControl|Library|Selection|StampPicture|commands/Hash|commands/Login)
set(stamping ${stamping}|commands/Sign|commands/Stamp|commands/StampSubFilter)
# What the dialog program and the library have to agree about.
set(templates dialogs/Resource.h)

file(GLOB_RECURSE sources RELATIVE ${ROOT} ${ROOT}/tools/*.h ${ROOT}/tools/*.cpp)
foreach(source IN LISTS sources)
    includes_of(${ROOT}/${source} included)
    foreach(header IN LISTS included)
        layer_of(${header} other)
        if(NOT other MATCHES "^(foundation|platform)?$" AND
           NOT (source MATCHES "^tools/dialog/" AND header STREQUAL templates))
            list(APPEND faults "${source}: ${header} is the library's own")
        elseif(source MATCHES "^tools/tesmark/(${stamping})\\.(h|cpp)$" AND
               header MATCHES "^components/(${closed})/")
            list(APPEND faults "${source}: ${header} is behind a closed interface")
        endif()
    endforeach()
endforeach()

if(faults)
    list(JOIN faults "\n  " text)
    message(FATAL_ERROR "Includes that go up:\n  ${text}")
endif()
