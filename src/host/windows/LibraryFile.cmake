# What stands in and beside the library's file on Windows.

configure_file(windows/TesmarkOpt.rc.in ${CMAKE_CURRENT_BINARY_DIR}/TesmarkOpt.rc @ONLY)
target_sources(TesmarkOpt_x64 PRIVATE
    ${CMAKE_CURRENT_BINARY_DIR}/TesmarkOpt.rc windows/Dialogs.rc)
# Includes of a resource script are not followed.
set_source_files_properties(windows/Dialogs.rc PROPERTIES
    OBJECT_DEPENDS ${PROJECT_SOURCE_DIR}/src/dialogs/Resource.h)

# For hosts: libTesmarkOpt_x64.dll.a to link with mingw-w64, TesmarkOpt_x64.lib with Microsoft's
# tools. The latter take the short form alone without complaint, which GNU's dlltool doesn't write.
set_target_properties(TesmarkOpt_x64 PROPERTIES
    IMPORT_PREFIX lib ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
add_custom_command(TARGET TesmarkOpt_x64 POST_BUILD
    COMMAND ${LLVM_DLLTOOL} -m i386:x86-64 -d ${CMAKE_CURRENT_BINARY_DIR}/TesmarkOpt_x64.def
            -l $<TARGET_FILE_DIR:TesmarkOpt_x64>/TesmarkOpt_x64.lib
    BYPRODUCTS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/TesmarkOpt_x64.lib VERBATIM)
