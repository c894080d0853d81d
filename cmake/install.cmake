# What is installed, in components: `runtime` (the libraries), `development` (what their users build with), `tools` (the
# command line, and on Windows the window), and `python`, which bindings/python installs.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Qv8Effect)

set(libraries qv8effect qv8com)
if(NOT WIN32)
  list(APPEND libraries qv8platform)
endif()
set(static_libraries "")
if(QV8_BUILD_STATIC)
  list(TRANSFORM libraries APPEND _static OUTPUT_VARIABLE static_libraries)
endif()

# Below /usr the system finds libraries. Elsewhere what is installed finds its own, wherever the whole tree is moved.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  file(RELATIVE_PATH way_to_libraries /${CMAKE_INSTALL_FULL_BINDIR} /${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
  if(TARGET qv8)
    set_target_properties(qv8 PROPERTIES INSTALL_RPATH "$ORIGIN/${way_to_libraries}")
  endif()
endif()

install(TARGETS ${libraries} ${static_libraries} EXPORT Qv8EffectTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN "qv8*.h")
if(WIN32)
  foreach(library IN LISTS libraries)
    get_target_property(import_files ${library} QV8_IMPORT_FILES)
    install(FILES ${import_files} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  endforeach()
endif()
foreach(program qv8 qv8window)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  endif()
endforeach()

# For find_package
install(EXPORT Qv8EffectTargets NAMESPACE Qv8Effect:: DESTINATION ${package_folder} COMPONENT development)
configure_package_config_file(cmake/Qv8EffectConfig.cmake.in ${PROJECT_BINARY_DIR}/Qv8EffectConfig.cmake
  INSTALL_DESTINATION ${package_folder} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Qv8EffectConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Qv8EffectConfig.cmake ${PROJECT_BINARY_DIR}/Qv8EffectConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT development)

# For pkg-config, which finds the folder from where its own file lies
file(RELATIVE_PATH way_to_prefix /${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig /${CMAKE_INSTALL_PREFIX})
set(linked "-lQv8Effect -lQv8Com")
set(linked_statically "-lcomctl32 -lgdi32 -luser32")
set(required_statically "")
if(NOT WIN32)
  string(APPEND linked " -lQv8Platform")
  set(linked_statically "-lstdc++ -lm")
  if(QV8_BUILD_STATIC)
    set(required_statically "freetype2 fontconfig")
  endif()
endif()
configure_file(cmake/qv8effect.pc.in ${PROJECT_BINARY_DIR}/qv8effect.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qv8effect.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

find_program(QV8_DPKG dpkg-shlibdeps DOC "Says that .deb packages can be made")
if(QV8_DPKG AND NOT CMAKE_CROSSCOMPILING)
  include(packages)
endif()
