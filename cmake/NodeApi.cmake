# corvane::node_api: the headers a Node-API module is compiled against and, on Windows, what it links to reach its host.
# corvane_add_node_module(TARGET ...): a shared library that Node loads by the name TARGET.node.

set(CORVANE_NODE_MODULES "${PROJECT_SOURCE_DIR}/node_modules" CACHE PATH "Folder that holds the npm packages")
foreach(header node-addon-api/napi.h node-api-headers/include/node_api.h)
  if(NOT EXISTS "${CORVANE_NODE_MODULES}/${header}")
    message(FATAL_ERROR "${CORVANE_NODE_MODULES}/${header} is missing: run scripts/setup.sh build")
  endif()
endforeach()

add_library(corvane_node_api INTERFACE)
add_library(corvane::node_api ALIAS corvane_node_api)
target_include_directories(corvane_node_api SYSTEM INTERFACE
  "${CORVANE_NODE_MODULES}/node-addon-api" "${CORVANE_NODE_MODULES}/node-api-headers/include")
target_compile_definitions(corvane_node_api INTERFACE NAPI_VERSION=8 NAPI_DISABLE_CPP_EXCEPTIONS NODE_API_SWALLOW_UNTHROWABLE_EXCEPTIONS)

if(WIN32)
  # The host may have any file name, so its functions are bound late, through a hook that answers with the running program.
  set(node_def "${CMAKE_CURRENT_BINARY_DIR}/node.def")
  set(exports "")
  foreach(part js_native_api node_api)
    file(STRINGS "${CORVANE_NODE_MODULES}/node-api-headers/def/${part}.def" lines)
    list(FILTER lines INCLUDE REGEX "^ *napi_|^ *node_api_")
    list(APPEND exports ${lines})
  endforeach()
  list(JOIN exports "\n" exports)
  file(CONFIGURE OUTPUT "${node_def}" CONTENT "NAME NODE.EXE\nEXPORTS\n${exports}\n" @ONLY)

  set(node_import "${CMAKE_CURRENT_BINARY_DIR}/libnode_delay.a")
  add_custom_command(OUTPUT "${node_import}"
    COMMAND "${CMAKE_DLLTOOL}" -m i386:x86-64 -d "${node_def}" -D node.exe -y "${node_import}"
    DEPENDS "${node_def}"
    COMMENT "Delay-load import library of the Node-API host"
    VERBATIM)
  add_custom_target(corvane_node_import DEPENDS "${node_import}")
  add_library(corvane_delay_load_hook OBJECT "${PROJECT_SOURCE_DIR}/cmake/delay_load_hook.cpp")
  target_link_libraries(corvane_delay_load_hook PRIVATE corvane_defaults)
endif()

function(corvane_add_node_module target)
  add_library(${target} MODULE ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".node"
    BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN")
  target_link_libraries(${target} PRIVATE corvane_defaults corvane_node_api)
  if(WIN32)
    add_dependencies(${target} corvane_node_import)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:corvane_delay_load_hook>)
    target_link_libraries(${target} PRIVATE "${node_import}")
  endif()
endfunction()
