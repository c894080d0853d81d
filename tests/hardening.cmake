# Reads from each of FILES (separated by commas), with READELF or OBJDUMP, whether it was built with what
# cmake/hardening.cmake asks for.
string(REPLACE "," ";" files "${FILES}")

function(expect file dump pattern what)
  if(NOT dump MATCHES "${pattern}")
    message(SEND_ERROR "${file}: ${what}")
  endif()
endfunction()

foreach(file IN LISTS files)
  if(WINDOWS)
    execute_process(COMMAND ${OBJDUMP} -p ${file} OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)
    expect(${file} "${dump}" "DYNAMIC_BASE" "its address does not change from run to run")
    expect(${file} "${dump}" "NX_COMPAT" "data can be executed")
    expect(${file} "${dump}" "Base Relocation Directory|\\.reloc|Base Relocations" "it cannot be moved")
    if(file MATCHES "\\.dll$")
      expect(${file} "${dump}" "NO_SEH|0x0*400" "it has exception handlers of the system")
    endif()
  else()
    execute_process(COMMAND ${READELF} -W -h -l -d --dyn-syms ${file} OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)
    expect(${file} "${dump}" "Type: +DYN" "not position-independent")
    expect(${file} "${dump}" "GNU_RELRO" "tables of addresses stay writable")
    expect(${file} "${dump}" "FLAGS[^\n]*NOW" "addresses are looked up late")
    expect(${file} "${dump}" "GNU_STACK +[^\n]* RW +0x" "the stack can be executed")
    expect(${file} "${dump}" "__stack_chk_fail" "no stack protector")
    if(file MATCHES "qv8$") # what the others copy has no size known to the compiler
      expect(${file} "${dump}" "_chk@" "no checks of sizes")
    endif()
    if(X86)
      # What jumps may go to begins with this instruction. The compiler's own start-up code has it a few times.
      execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C grep -obaP "\\xF3\\x0F\\x1E[\\xFA\\xFB]" ${file}
                      COMMAND wc -l OUTPUT_VARIABLE count)
      if(count LESS 10)
        message(SEND_ERROR "${file}: jumps may go anywhere")
      endif()
    endif()
  endif()
endforeach()
