# Flags of everything that is ours. `qv8_flags` is linked privately by every target.
add_library(qv8_flags INTERFACE)
target_compile_options(qv8_flags INTERFACE -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow
                       $<$<BOOL:${QV8_WARNINGS_AS_ERRORS}>:-Werror>
                       # GCC 12 sees overlaps in std::string that are not there, at -O3
                       $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# The same arithmetic on every build: in the named precision, which on x86 takes SSE2 registers, and no fused multiply-add.
target_compile_options(qv8_flags INTERFACE -ffp-contract=off)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
  target_compile_options(qv8_flags INTERFACE -msse2 -mfpmath=sse)
endif()
target_include_directories(qv8_flags INTERFACE ${PROJECT_SOURCE_DIR}/include)

if(QV8_SANITIZE)
  target_compile_options(qv8_flags INTERFACE -fsanitize=${QV8_SANITIZE} -fno-sanitize-recover=all
                         -fno-omit-frame-pointer
                         # handles are pointers to types that only their makers know
                         $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
  target_link_options(qv8_flags INTERFACE -fsanitize=${QV8_SANITIZE})
endif()

if(QV8_LINK_TIME)
  target_compile_options(qv8_flags INTERFACE -flto=auto)
  target_link_options(qv8_flags INTERFACE -flto=auto -Werror=odr -Werror=lto-type-mismatch)
endif()

# Lets the fuzzers see the way through the code. Linked by what is to be tested, and not by the tests.
add_library(qv8_followed INTERFACE)
if(QV8_BUILD_FUZZERS)
  target_compile_options(qv8_followed INTERFACE -fsanitize-coverage=inline-8bit-counters,pc-table)
endif()

if(WIN32)
  # Runtime libraries become part of each file, so that it can be copied alone. The same sources give the same bytes.
  target_link_options(qv8_flags INTERFACE -static -static-libgcc -static-libstdc++ -Wl,--no-insert-timestamp)
  target_compile_definitions(qv8_flags INTERFACE _WIN32_WINNT=0x0501 WINVER=0x0501)
endif()

include(${CMAKE_CURRENT_LIST_DIR}/hardening.cmake)
