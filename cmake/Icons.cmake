# Turns the drawings in resources/icons into PNGs while building, once in their own inks and once in
# light ones for dark palettes, so that the program needs no SVG reader:
# :/icons/24/exit.png, :/icons/light/24/exit.png, :/icons/48/warning.png, :/icons/256/app.png.
# 24 and 16 pixels at 100, 150, 200 and 300 per cent of a screen's scale:
set(CORVANE_ICON_SIZES 16 24 32 36 48 72)

find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert is missing; install the package librsvg2-bin")
endif()

# corvane_draw_icon(OUT-VARIABLE NAME DRAWING FOLDER SIZES [rsvg-convert options...])
# Appends FOLDER/SIZE/NAME.png of the build directory, made from DRAWING.svg, for each size.
function(corvane_draw_icon out name drawing folder sizes)
  set(drawing "${PROJECT_SOURCE_DIR}/resources/icons/${drawing}.svg")
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

# corvane_add_icons(TARGET NAMES name... MESSAGES name...)
# Compiles the drawings, those of message boxes and the program's own icon "app" into a library.
function(corvane_add_icons target)
  cmake_parse_arguments(ARG "" "" "NAMES;MESSAGES" ${ARGN})
  set(root "${CMAKE_CURRENT_BINARY_DIR}/icons")
  set(files "")
  foreach(name IN LISTS ARG_NAMES)
    corvane_draw_icon(files ${name} ${name} "${root}" "${CORVANE_ICON_SIZES}")
    corvane_draw_icon(files ${name} ${name} "${root}/light" "${CORVANE_ICON_SIZES}"
      --stylesheet "${PROJECT_SOURCE_DIR}/resources/icons/light-ink.css")
  endforeach()
  foreach(name IN LISTS ARG_MESSAGES)
    corvane_draw_icon(files ${name} ${name} "${root}" "32;48;72;96;144")
  endforeach()
  corvane_draw_icon(files app app-small "${root}" "16;24")
  corvane_draw_icon(files app app "${root}" "32;48;64;96;128;256")
  qt_add_resources(${target} ${target}_icons PREFIX "/icons" BASE "${root}" FILES ${files})
endfunction()
