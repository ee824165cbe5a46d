# Language level, warnings and sanitizers, carried by one interface target that every target of ours links.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

add_library(corvane_defaults INTERFACE)
target_link_libraries(corvane_defaults INTERFACE Threads::Threads)
target_include_directories(corvane_defaults INTERFACE "${PROJECT_SOURCE_DIR}/include")
target_compile_options(corvane_defaults INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Werror)

if(WIN32)
  # One file to ship: without these the module wants MinGW's own runtime libraries beside it.
  target_link_options(corvane_defaults INTERFACE -static -static-libgcc -static-libstdc++)
  target_compile_definitions(corvane_defaults INTERFACE WIN32_LEAN_AND_MEAN UNICODE _UNICODE _WIN32_WINNT=0x0A00)
else()
  # A function that nothing defines should stop the load, not the first call of it.
  target_link_options(corvane_defaults INTERFACE -Wl,-z,now)
endif()

if(CORVANE_SANITIZE)
  target_compile_options(corvane_defaults INTERFACE
    "-fsanitize=${CORVANE_SANITIZE}" -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    # GCC sees uninitialised reads in what the instrumentation adds.
    "$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>")
  target_link_options(corvane_defaults INTERFACE "-fsanitize=${CORVANE_SANITIZE}")
endif()
