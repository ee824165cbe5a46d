# corvane::engine_import: the engine library CorvaneRTC as the module sees it, ten C entry points and no implementation.
# Which library answers is decided at load time by the one that lies beside the module, so the module never waits for
# an engine to be built.

set(CORVANE_ENGINE_DEF "${PROJECT_SOURCE_DIR}/cmake/CorvaneRTC.def")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CORVANE_ENGINE_DEF}")
file(STRINGS "${CORVANE_ENGINE_DEF}" CORVANE_ENGINE_EXPORTS REGEX "^ ")
list(TRANSFORM CORVANE_ENGINE_EXPORTS STRIP)

add_library(corvane_engine_import INTERFACE)
add_library(corvane::engine_import ALIAS corvane_engine_import)

if(WIN32)
  set(engine_import "${CMAKE_CURRENT_BINARY_DIR}/libCorvaneRTC.dll.a")
  add_custom_command(OUTPUT "${engine_import}"
    COMMAND "${CMAKE_DLLTOOL}" -m i386:x86-64 -d "${CORVANE_ENGINE_DEF}" -l "${engine_import}"
    DEPENDS "${CORVANE_ENGINE_DEF}"
    COMMENT "Import library of CorvaneRTC.dll"
    VERBATIM)
  add_custom_target(corvane_engine_import_file DEPENDS "${engine_import}")
  add_dependencies(corvane_engine_import corvane_engine_import_file)
  target_link_libraries(corvane_engine_import INTERFACE "${engine_import}")
else()
  # ELF has no import libraries: an empty-bodied library of the same name takes their place at link time only.
  list(TRANSFORM CORVANE_ENGINE_EXPORTS REPLACE "(.+)" "__attribute__((visibility(\"default\"))) void \\1(void) {}"
    OUTPUT_VARIABLE stub_lines)
  list(JOIN stub_lines "\n" stub_lines)
  set(stub_source "${CMAKE_CURRENT_BINARY_DIR}/engine_import.c")
  file(CONFIGURE OUTPUT "${stub_source}" CONTENT "${stub_lines}\n" @ONLY)
  add_library(corvane_engine_stub SHARED "${stub_source}")
  set_target_properties(corvane_engine_stub PROPERTIES
    OUTPUT_NAME CorvaneRTC LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/import")
  # By file and not by target: nothing of it may be wanted at run time.
  add_dependencies(corvane_engine_import corvane_engine_stub)
  target_link_libraries(corvane_engine_import INTERFACE "$<TARGET_FILE:corvane_engine_stub>")
endif()
