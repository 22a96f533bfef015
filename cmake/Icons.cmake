# Turns the drawings in resources/icons into PNGs while building, once in their own ink and once in a
# light ink for dark palettes, so that the program needs no SVG reader:
# :/icons/24/exit.png, :/icons/light/24/exit.png, :/icons/256/app.png.

find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert is missing; install the package librsvg2-bin")
endif()

# corvane_draw_icon(OUT-VARIABLE NAME FOLDER SIZES [rsvg-convert options...])
# Appends FOLDER/SIZE/NAME.png of the build directory for each size.
function(corvane_draw_icon out name folder sizes)
  set(drawing "${PROJECT_SOURCE_DIR}/resources/icons/${name}.svg")
  set(drawn "")
  set(commands "")
  foreach(size IN LISTS sizes)
    set(file "${folder}/${size}/${name}.png")
    file(MAKE_DIRECTORY "${folder}/${size}")
    list(APPEND drawn "${file}")
    list(APPEND commands COMMAND "${RSVG_CONVERT}" ${ARGN} -w ${size} -h ${size} -o "${file}" "${drawing}")
  endforeach()
  add_custom_command(OUTPUT ${drawn} ${commands}
    DEPENDS "${drawing}" "${PROJECT_SOURCE_DIR}/resources/icons/light-ink.css" VERBATIM
    COMMENT "Drawing the icon ${name}")
  set(${out} ${${out}} ${drawn} PARENT_SCOPE)
endfunction()

# corvane_add_icons(TARGET NAMES name...)
# Compiles the drawings and the program's own icon "app" into a library.
function(corvane_add_icons target)
  cmake_parse_arguments(ARG "" "" "NAMES" ${ARGN})
  set(root "${CMAKE_CURRENT_BINARY_DIR}/icons")
  set(files "")
  foreach(name IN LISTS ARG_NAMES)
    corvane_draw_icon(files ${name} "${root}" "16;24;32;48")
    corvane_draw_icon(files ${name} "${root}/light" "16;24;32;48"
      --stylesheet "${PROJECT_SOURCE_DIR}/resources/icons/light-ink.css")
  endforeach()
  corvane_draw_icon(files app "${root}" "16;24;32;48;64;128;256")
  qt_add_resources(${target} ${target}_icons PREFIX "/icons" BASE "${root}" FILES ${files})
endfunction()
