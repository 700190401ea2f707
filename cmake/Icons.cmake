# vexor_icons(TARGET): compiles resources/icons/*.svg into TARGET as ":/icons/<name>.png" with "@2x" beside each, and
# the same for dark palettes as ":/icons/dark/<name>.png".
add_executable(svg_to_png ${CMAKE_SOURCE_DIR}/cmake/icons/svg_to_png.cpp)
target_link_libraries(svg_to_png PRIVATE Qt6::Gui Qt6::Svg)
set_target_properties(svg_to_png PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tools)

function(vexor_icons TARGET)
  file(GLOB drawings CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/icons/*.svg)
  set(dir ${CMAKE_BINARY_DIR}/icons)
  file(MAKE_DIRECTORY ${dir})
  set(pictures "")
  set(list "<RCC><qresource prefix=\"/icons\">\n")
  foreach(drawing IN LISTS drawings)
    get_filename_component(name ${drawing} NAME_WLE)
    set(files ${name}.png ${name}@2x.png dark/${name}.png dark/${name}@2x.png)
    list(TRANSFORM files PREPEND ${dir}/ OUTPUT_VARIABLE paths)
    add_custom_command(OUTPUT ${paths} COMMAND svg_to_png ${drawing} ${dir} DEPENDS ${drawing} svg_to_png)
    list(APPEND pictures ${paths})
    foreach(file IN LISTS files)
      string(APPEND list "<file>${file}</file>\n")
    endforeach()
  endforeach()
  file(CONFIGURE OUTPUT ${dir}/icons.qrc CONTENT "${list}</qresource></RCC>\n" @ONLY)
  add_custom_command(OUTPUT ${dir}/qrc_icons.cpp
    COMMAND Qt6::rcc --name icons --output ${dir}/qrc_icons.cpp ${dir}/icons.qrc
    DEPENDS ${pictures} ${dir}/icons.qrc)
  target_sources(${TARGET} PRIVATE ${dir}/qrc_icons.cpp)
  set_source_files_properties(${dir}/qrc_icons.cpp PROPERTIES SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOMOC ON)
endfunction()
