# What the tool chain can do against faults being used, for everything that is ours. `tests/hardening.cmake` reads the
# files for it. Sanitizers watch more closely and do not go together with it.
if(WIN32)
  # Addresses that differ from run to run, data that is not executed, and in the libraries no exception handlers of the
  # system to be led astray. The stack protector would draw in another library of the system.
  target_link_options(qv8_flags INTERFACE -Wl,--dynamicbase -Wl,--nxcompat
                      $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,--no-seh>)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    target_link_options(qv8_flags INTERFACE -Wl,--high-entropy-va)
  endif()
elseif(NOT QV8_SANITIZE)
  target_compile_options(qv8_flags INTERFACE -fstack-protector-strong
                         $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    target_compile_options(qv8_flags INTERFACE -fcf-protection=full)
  endif()
  target_link_options(qv8_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack
                      $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
endif()
