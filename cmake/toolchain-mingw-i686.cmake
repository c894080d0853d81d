# 32-bit Windows with the posix-threaded MinGW compiler; Wine runs what is built.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(triplet i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)
