# What every target of the project shares: language level, warnings, Qt's strict text rules,
# precompiled headers and one place for programs.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CORVANE_CCACHE ccache)
if(CORVANE_CCACHE)
  # Precompiled headers only hit the cache when it may overlook their time stamps.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${CORVANE_CCACHE}")
  add_compile_options(-fpch-preprocess)
endif()

# clang-tidy takes the nearest settings: what Qt's tools write here is not ours to check.
file(WRITE "${PROJECT_BINARY_DIR}/.clang-tidy" "Checks: '-*,llvm-twine-local'\n")

add_library(corvane_options INTERFACE)
target_include_directories(corvane_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(corvane_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
target_compile_options(corvane_options INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
if(CORVANE_WARNINGS_FATAL)
  target_compile_options(corvane_options INTERFACE -Werror)
endif()
if(CORVANE_SANITIZE)
  # The libraries' own assertions belong to it: an index out of range in a container ends the program too.
  target_compile_options(corvane_options INTERFACE
    -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_definitions(corvane_options INTERFACE _GLIBCXX_ASSERTIONS QT_FORCE_ASSERTS)
  target_link_options(corvane_options INTERFACE -fsanitize=address,undefined)
endif()
if(CORVANE_COVERAGE)
  target_compile_options(corvane_options INTERFACE --coverage -O0)
  target_compile_definitions(corvane_options INTERFACE CORVANE_COVERAGE)
  target_link_options(corvane_options INTERFACE --coverage)
endif()
if(CORVANE_FUZZ)
  # The libraries' own checks of ranges and preconditions find what lands in memory that is still ours.
  target_compile_definitions(corvane_options INTERFACE QT_FORCE_ASSERTS _GLIBCXX_ASSERTIONS)
  target_compile_options(corvane_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined)
  target_link_options(corvane_options INTERFACE -fsanitize=address,undefined)
endif()

# The headers nearly every source needs, compiled once for libraries without widgets and once for those
# with them and for the tests. These targets link nothing else: a definition that another target lacks
# would make the precompiled header useless there.
function(corvane_precompiled name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  set(source "${PROJECT_BINARY_DIR}/${name}.cpp")
  file(GENERATE OUTPUT "${source}" CONTENT "")
  add_library(${name} OBJECT "${source}")
  target_link_libraries(${name} PRIVATE corvane_options ${ARG_LINK})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_compile_options(${name} PRIVATE -fPIC)
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# The ending of sources that each system has its own of.
if(WIN32)
  set(CORVANE_SYSTEM windows)
else()
  set(CORVANE_SYSTEM posix)
endif()

# corvane_library(NAME SOURCES file... LINK target... [WIDGETS])
# A folder of src/ as one static library. WIDGETS marks the few folders that may show something.
function(corvane_library name)
  cmake_parse_arguments(ARG "WIDGETS" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC corvane_options ${ARG_LINK})
  if(ARG_WIDGETS)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_precompile_headers(${name} REUSE_FROM corvane_widgets_pch)
  else()
    target_link_libraries(${name} PUBLIC Qt6::Gui)
    target_precompile_headers(${name} REUSE_FROM corvane_core_pch)
  endif()
endfunction()
