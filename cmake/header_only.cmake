# CLI11 and the JSON library consist of headers alone and suit any compiler, so a cross build uses the ones of the
# building system. Their parent folder holds that system's own C library headers as well, which a cross compiler must not
# see: a folder of links offers them and nothing else.
foreach(package CLI/CLI.hpp nlohmann/json.hpp)
  get_filename_component(folder ${package} DIRECTORY)
  find_path(QV8_${folder}_PARENT ${package} NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include /usr/local/include REQUIRED)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
  file(CREATE_LINK ${QV8_${folder}_PARENT}/${folder} ${CMAKE_BINARY_DIR}/headers/${folder} SYMBOLIC)
endforeach()

add_library(qv8_header_only INTERFACE)
target_include_directories(qv8_header_only SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)

# Sources that such libraries fill: they take as long to optimise as all the rest, for what runs once.
function(qv8_compiles_long)
  set_source_files_properties(${ARGN} PROPERTIES
    COMPILE_OPTIONS $<$<NOT:$<CONFIG:Release>>:-O0> SKIP_PRECOMPILE_HEADERS ON)
endfunction()
