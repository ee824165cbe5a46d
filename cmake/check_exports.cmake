# cmake -DNM=... -DLIBRARY=... -DEXPECTED=a,b,c [-DALLOW_MORE=ON] -P check_exports.cmake
# Fails unless LIBRARY defines exactly the expected dynamic symbols, or at least them with ALLOW_MORE.

execute_process(COMMAND "${NM}" --dynamic --defined-only --format=posix "${LIBRARY}"
  OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${table}")
set(found "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE " .*" "" name "${line}")
  list(APPEND found "${name}")
endforeach()

string(REPLACE "," ";" expected "${EXPECTED}")
set(missing ${expected})
list(REMOVE_ITEM missing ${found})
set(surplus ${found})
list(REMOVE_ITEM surplus ${expected})
if(missing)
  message(FATAL_ERROR "${LIBRARY} does not export: ${missing}")
endif()
if(surplus AND NOT ALLOW_MORE)
  message(FATAL_ERROR "${LIBRARY} exports more than it should: ${surplus}")
endif()
