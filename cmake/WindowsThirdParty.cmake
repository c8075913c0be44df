# The third-party libraries of the Windows build: THIRDPARTY_PREFIX is the folder that
# packaging/windows/build-thirdparty.sh made. Included once, at the top level and after project().
#
# From then on find_package and pkg_check_modules give in every folder the targets that they give on
# Linux: OpenSSL::Crypto, OpenSSL::SSL, CLI11::CLI11, CURL::libcurl and PkgConfig::* of jsoncpp,
# gdlib, freetype2, libqpdf, libgcrypt, libcurl, giflib, libpng, libjpeg, zlib, pugixml, sqlite3 and
# cpp-httplib; all static, with what they need besides. CURL_INCLUDE_DIRS and the include folder of
# p11-kit-1 are there too. The toolchain has to list the folder in CMAKE_FIND_ROOT_PATH.

set(THIRDPARTY_PREFIX "" CACHE PATH "What packaging/windows/build-thirdparty.sh printed")
if(NOT EXISTS ${THIRDPARTY_PREFIX}/lib/pkgconfig)
    message(FATAL_ERROR "THIRDPARTY_PREFIX (${THIRDPARTY_PREFIX}) holds no libraries: it has to be "
        "the folder that packaging/windows/build-thirdparty.sh prints")
endif()

# The machine's pkg-config, which then knows only these libraries; a static one names all it needs.
set(ENV{PKG_CONFIG_LIBDIR} ${THIRDPARTY_PREFIX}/lib/pkgconfig)
set(ENV{PKG_CONFIG_PATH})
set(PKG_CONFIG_ARGN --static CACHE STRING "For pkg-config")

# They are built with the stack protector, and its own parts come in by this flag alone.
add_link_options(-fstack-protector-strong)

set(OPENSSL_ROOT_DIR ${THIRDPARTY_PREFIX})
set(OPENSSL_USE_STATIC_LIBS ON)

find_package(CURL REQUIRED CONFIG)
set(CURL_INCLUDE_DIRS ${THIRDPARTY_PREFIX}/include)
