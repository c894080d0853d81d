# Windows: the exports of a library, and import libraries for who links with it. Definition files of the sources list
# exports as NAME = NAME@BYTES; import libraries know decorated names for the caller's linker, and plain ones to load by.
set(import_library ${CMAKE_DLLTOOL} --kill-at)
find_program(QV8_LLVM_DLLTOOL NAMES llvm-dlltool DOC "Makes import libraries for the other family of linkers")
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(machine i386:x86-64)
  set(a_required_name DibNumColors)
else()
  set(machine i386)
  set(a_required_name _DibNumColors@4)
endif()

# Copies DEFINITIONS to OUTPUT with names as this processor's linkers know them: decorated, or, with 64 bits, plain.
function(write_definitions definitions output)
  file(STRINGS ${definitions} lines REGEX "^[^;]")
  list(TRANSFORM lines REPLACE "^ *[A-Za-z0-9]+ = ([A-Za-z0-9]+@[0-9]+)$" "    \\1")
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    list(TRANSFORM lines REPLACE "@[0-9]+$" "")
  endif()
  list(JOIN lines "\n" text)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${definitions})
  file(CONFIGURE OUTPUT ${output} CONTENT "${text}\n" @ONLY)
endfunction()

# Gives a library its exports and import libraries, lib*.dll.a and, if the tool is there, *.lib. The linker's own import
# library knows the plain names only, which no 32-bit stdcall call asks for; ours takes its place.
function(define_exports target name definitions)
  set(written ${CMAKE_CURRENT_BINARY_DIR}/${name}.def)
  write_definitions(${definitions} ${written})
  target_sources(${target} PRIVATE $<IF:$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>,${written},${CMAKE_CURRENT_SOURCE_DIR}/${definitions}>)
  # Called in its folder: what the tool is told to write gives names inside, which are to be the same everywhere.
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E chdir $<TARGET_LINKER_FILE_DIR:${target}>
            ${import_library} --temp-prefix ${name} -d ${written} -l $<TARGET_LINKER_FILE_NAME:${target}> VERBATIM)
  set_property(TARGET ${target} PROPERTY QV8_IMPORT_FILES ${written})
  if(QV8_LLVM_DLLTOOL)
    set(other ${CMAKE_CURRENT_BINARY_DIR}/${name}.lib)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${QV8_LLVM_DLLTOOL} -k -m ${machine} -d ${written} -l ${other} VERBATIM)
    set_property(TARGET ${target} APPEND PROPERTY QV8_IMPORT_FILES ${other})
  endif()
endfunction()
