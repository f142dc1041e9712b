# The one place that decides how every target is compiled.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(KAVRO_CCACHE ccache)
if(KAVRO_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KAVRO_CCACHE})
endif()

add_library(kavro_options INTERFACE)
target_compile_features(kavro_options INTERFACE cxx_std_20)
target_include_directories(kavro_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(kavro_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference
  -Werror -fno-omit-frame-pointer)
# g++ 12 warns falsely about inlined coroutine frames and QString at -O2.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  target_compile_options(kavro_options INTERFACE
    -Wno-null-dereference -Wno-maybe-uninitialized -Wno-stringop-overread -Wno-restrict)
endif()
target_compile_definitions(kavro_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH
  QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400
  KAVRO_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
  KAVRO_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  KAVRO_VERSION_REVISION=${PROJECT_VERSION_PATCH})
if(KAVRO_SANITIZE)
  target_compile_options(kavro_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined)
  target_link_options(kavro_options INTERFACE -fsanitize=address,undefined)
  # clang 14 cannot assemble coroutines with this check.
  if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    target_compile_options(kavro_options INTERFACE -fno-sanitize=function)
  endif()
endif()

# Fuzzing follows the paths through the libraries, so these are built for it as well.
if(KAVRO_FUZZ)
  target_compile_options(kavro_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# kavro_library(NAME SOURCES a.cpp … LINKS lib …): one static library per folder.
function(kavro_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC kavro_options ${ARG_LINKS})
endfunction()

# kavro_test(NAME SOURCES a.cpp … LINKS lib … [WRAP command…] [TIMEOUT s]): one test program, one ctest case.
function(kavro_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINKS;WRAP" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kavro_options kavro_test_world ${ARG_LINKS})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_test(NAME ${name} COMMAND ${ARG_WRAP} $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
endfunction()

# The program itself; it stands beside the files that a portable folder holds.
function(kavro_program)
  add_executable(kavro2000 main.cpp)
  target_link_libraries(kavro2000 PRIVATE kavro_editors kavro_options_dialog kavro_agent_window kavro_ui)
  add_dependencies(kavro2000 kavro-import kavro_default_database kavro_html_template kavro_characters kavro_help)
endfunction()
