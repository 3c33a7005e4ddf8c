# SPDX-License-Identifier: MIT
# English is what stands in the sources, but for its plurals; each other language is a file of its
# own. The target update_translations brings them up to date with the sources.
find_program(LRELEASE lrelease PATHS ${QT6_INSTALL_PREFIX}/lib/qt6/bin REQUIRED)
find_program(LUPDATE lupdate PATHS ${QT6_INSTALL_PREFIX}/lib/qt6/bin REQUIRED)

# Brings the file that is named last up to date; with -pluralonly it holds texts with numbers alone.
set(VEK_UPDATE_TRANSLATION ${LUPDATE} -silent -I ${CMAKE_SOURCE_DIR}/source
  ${CMAKE_SOURCE_DIR}/source/views -extensions qml,cpp,hpp -no-obsolete -locations none
  -source-language en CACHE INTERNAL "")

# vek_translations(<compiled> <source>...): compiles the files of languages and names what it makes
# in the variable <compiled>.
function(vek_translations compiled)
  set(made "")
  set(updates "")
  foreach(language IN LISTS ARGN)
    get_filename_component(name ${language} NAME_WE)
    set(file ${CMAKE_CURRENT_BINARY_DIR}/${name}.qm)
    add_custom_command(OUTPUT ${file} DEPENDS ${language}
      COMMAND ${LRELEASE} -silent ${language} -qm ${file} VERBATIM)
    list(APPEND made ${file})
    set(only "")
    if(name STREQUAL vek_en)
      set(only -pluralonly)
    endif()
    list(APPEND updates COMMAND ${VEK_UPDATE_TRANSLATION} ${only} -ts ${language})
  endforeach()
  add_custom_target(update_translations ${updates} VERBATIM)
  set(${compiled} ${made} PARENT_SCOPE)
endfunction()
