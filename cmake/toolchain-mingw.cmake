# Windows of either kind: included by a toolchain file that names its `triplet`.
set(CMAKE_SYSTEM_NAME Windows)
find_program(CMAKE_CXX_COMPILER NAMES ${triplet}-g++-posix ${triplet}-g++ REQUIRED)
find_program(CMAKE_C_COMPILER NAMES ${triplet}-gcc-posix ${triplet}-gcc REQUIRED)
set(CMAKE_RC_COMPILER ${triplet}-windres)
# What scripts/codecs built; the link is followed, because libraries are named by where they lie.
file(REAL_PATH ${CMAKE_CURRENT_LIST_DIR}/../build/codecs/${triplet} codecs_folder)
set(ENV{PKG_CONFIG_LIBDIR} ${codecs_folder}/lib/pkgconfig)
set(CMAKE_FIND_ROOT_PATH /usr/${triplet} ${codecs_folder})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
