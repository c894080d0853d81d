# Checks the tables of what is shipped, with OBJDUMP.
#
# Qv8Effect.dll, given as DLL, exports the names in EXPORTS and no others; it imports from its companion the eight
# functions that any companion has, and otherwise from the system only.
#
# Each of FILES (separated by commas) starts on Windows XP, or with 64 BITS on Windows Vista: what it imports from the
# system is declared by the system's headers for that version, which COMPILER reads.
set(named "[ \t]+[0-9a-f]+[ \t]+[0-9]+[ \t]+([A-Za-z0-9_@]+)[ \t]*$")

# Sets `lines` to what is known of the file's tables and `imports` to words LIBRARY:NAME.
macro(read_tables file)
  execute_process(COMMAND ${OBJDUMP} -p ${file} OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "[][;]" " " dump "${dump}")
  string(REPLACE "\n" ";" lines "${dump}")
  set(imports "")
  set(library "")
  foreach(line IN LISTS lines)
    if(line MATCHES "DLL Name: (.+)$")
      string(TOLOWER "${CMAKE_MATCH_1}" library)
      string(STRIP "${library}" library)
    elseif(line MATCHES "^[ \t]*$")
      set(library "")
    elseif(library AND line MATCHES "^${named}")
      list(APPEND imports "${library}:${CMAKE_MATCH_1}")
    endif()
  endforeach()
endmacro()

# --- Qv8Effect.dll ----------------------------------------------------------------------------------------------------
read_tables(${DLL})
set(foreign ${imports})
list(FILTER foreign EXCLUDE REGEX "^(kernel32|gdi32|user32|msvcrt|qv8com)\\.dll:")
if(foreign)
  message(SEND_ERROR "Imports from elsewhere: ${foreign}")
endif()

set(exported "")
set(in_exports NO)
foreach(line IN LISTS lines)
  if(line MATCHES "Ordinal/Name Pointer")
    set(in_exports YES)
  elseif(in_exports AND line MATCHES "^[ \t]+[0-9]+ +([^ \t]+)[ \t]*$")
    list(APPEND exported "${CMAKE_MATCH_1}")
  endif()
endforeach()

file(STRINGS ${EXPORTS} definitions REGEX "^ +QV8")
set(wanted "")
foreach(definition IN LISTS definitions)
  string(REGEX MATCH "QV8[A-Za-z0-9]+" name "${definition}")
  list(APPEND wanted ${name})
endforeach()

list(SORT exported)
list(SORT wanted)
if(NOT exported STREQUAL wanted)
  message(SEND_ERROR "Exports\n  ${exported}\ninstead of\n  ${wanted}")
endif()

set(required DibNumColors GetBmp16Info GetBmp32Info GetDibPalSize PercentDlgClose PercentDlgOpen PercentProgress
    SetErrorStatus)
set(companion_imports ${imports})
list(FILTER companion_imports INCLUDE REGEX "^qv8com\\.dll:")
list(TRANSFORM companion_imports REPLACE "^.*:" "")
list(SORT companion_imports)
if(NOT companion_imports STREQUAL required)
  message(SEND_ERROR "Imports from the companion\n  ${companion_imports}\ninstead of\n  ${required}")
endif()

# --- The oldest version of the system ---------------------------------------------------------------------------------
# `later` are functions that are declared for every version, though later ones brought them, and the checked variants of
# the C library, which came with Vista.
if(BITS EQUAL 32)
  set(oldest "Windows XP")
  set(version 0x0501)
  set(later "GetSystemTimePreciseAsFileTime|GetThreadId|SetThreadStackGuarantee|.*_s")
else()
  set(oldest "Windows Vista")
  set(version 0x0600)
  set(later "GetSystemTimePreciseAsFileTime")
endif()
file(WRITE headers.c "#include <winsock2.h>\n#include <windows.h>\n#include <commctrl.h>\n#include <shellapi.h>\n")
execute_process(COMMAND ${COMPILER} -E -P -D_WIN32_WINNT=${version} -DWINVER=${version} headers.c
                OUTPUT_VARIABLE declared COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "," ";" files "${FILES}")
foreach(file IN LISTS files)
  read_tables(${file})
  list(FILTER imports EXCLUDE REGEX "^qv8(com|effect)\\.dll:")
  list(LENGTH imports count)
  if(count LESS 10)
    message(SEND_ERROR "${file}: only ${count} imports were found")
  endif()
  foreach(import IN LISTS imports)
    string(REGEX REPLACE "^.*:" "" name ${import})
    if(name MATCHES "^(${later})$" OR
       NOT (import MATCHES "^msvcrt\\.dll:" OR declared MATCHES "[^A-Za-z0-9_]${name}[^A-Za-z0-9_]"))
      message(SEND_ERROR "${file}: ${oldest} has no ${import}")
    endif()
  endforeach()
endforeach()
