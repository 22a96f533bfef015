# The tests of the Windows build: run under Wine by a launcher, all but those that left-out.txt names.

set(CORVANE_LEFT_OUT_FILE "${CMAKE_CURRENT_LIST_DIR}/left-out.txt")
set(CORVANE_HOST_DRIVE "")
if(WIN32 AND CMAKE_CROSSCOMPILING)
  set(CORVANE_HOST_DRIVE "Z:") # where Wine shows the files of this machine
  get_filename_component(CORVANE_QT_PREFIX "${Qt6_DIR}/../../.." ABSOLUTE)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/launch.in" "${PROJECT_BINARY_DIR}/tests/launch" @ONLY)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_BINARY_DIR}/tests/launch")
endif()

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CORVANE_LEFT_OUT_FILE}")
set(CORVANE_LEFT_OUT_PROGRAMS "") # those that are named as a whole
set(CORVANE_LEFT_OUT_NAMES "")    # all that are named, be it for one case
file(STRINGS "${CORVANE_LEFT_OUT_FILE}" lines REGEX "^[^#]")
foreach(line IN LISTS lines)
  string(REGEX REPLACE "^screen/" "" line "${line}") # which only the launcher looks at
  if(NOT line MATCHES "^([A-Za-z0-9_]+)(::.*[^ ])?  +[^ ]")
    message(FATAL_ERROR "${CORVANE_LEFT_OUT_FILE}: no test, two blanks and a reason: ${line}")
  endif()
  list(APPEND CORVANE_LEFT_OUT_NAMES "${CMAKE_MATCH_1}")
  if(NOT CMAKE_MATCH_2)
    list(APPEND CORVANE_LEFT_OUT_PROGRAMS "${CMAKE_MATCH_1}")
  endif()
endforeach()

# corvane_left_out(RESULT PROGRAM): whether this build leaves the whole program out.
function(corvane_left_out result program)
  set(${result} OFF PARENT_SCOPE)
  if(WIN32 AND program IN_LIST CORVANE_LEFT_OUT_PROGRAMS)
    set(${result} ON PARENT_SCOPE)
  endif()
endfunction()

# Behind the last test: whoever renames or removes one changes the list too, on any system.
function(corvane_check_left_out)
  foreach(name IN LISTS CORVANE_LEFT_OUT_NAMES)
    if(NOT TARGET ${name})
      message(FATAL_ERROR "${CORVANE_LEFT_OUT_FILE} names ${name}, which is no test program.")
    endif()
  endforeach()
endfunction()
