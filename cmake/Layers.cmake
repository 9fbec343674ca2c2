# The folders as layers. tm_layer(folder USES lower...) makes the folder's library, tm_<folder>
# with "/" as "_" (core/ui is tm_core_ui), from the sources directly in the folder, linked to the
# libraries of the folders it uses. A folder may use only folders declared before it, so the
# order of the calls is the order of the layers and no circle can be declared.
#
# tm_layer_check() then writes the declared graph to layers.txt and makes every layer's build
# wait for cmake/CheckLayers.cmake, which reads the #include lines of the sources: a folder that
# includes one it does not link, links one it does not include, or a circle, fails the build.
# The test layer_graph runs the same check.

set_property(GLOBAL PROPERTY TM_LAYERS "")

function(tm_layer folder)
  cmake_parse_arguments(L "" "TARGET" "USES" ${ARGN})
  string(REPLACE "/" "_" name "${folder}")
  set(target tm_${name})
  if(L_TARGET)
    set(target ${L_TARGET})
  endif()
  get_property(declared GLOBAL PROPERTY TM_LAYERS)
  set(links "")
  foreach(used IN LISTS L_USES)
    if(NOT used IN_LIST declared)
      message(FATAL_ERROR "Layer ${folder} uses ${used}, which is not a layer below it")
    endif()
    get_property(used_target GLOBAL PROPERTY TM_LAYER_TARGET_${used})
    list(APPEND links ${used_target})
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/${folder}/*.h)
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${links})
  if(folder MATCHES "/ui$")
    target_link_libraries(${target} PUBLIC Qt6::Widgets)
  endif()
  set_property(GLOBAL APPEND PROPERTY TM_LAYERS ${folder})
  set_property(GLOBAL PROPERTY TM_LAYER_TARGET_${folder} ${target})
  set_property(GLOBAL PROPERTY TM_LAYER_USES_${folder} "${L_USES}")
  set_property(GLOBAL APPEND PROPERTY TM_LAYER_TARGETS ${target})
endfunction()

function(tm_layer_check)
  get_property(layers GLOBAL PROPERTY TM_LAYERS)
  set(text "")
  set(all_sources "")
  foreach(folder IN LISTS layers)
    get_property(uses GLOBAL PROPERTY TM_LAYER_USES_${folder})
    string(REPLACE ";" " " uses "${uses}")
    string(APPEND text "${folder}:${uses}\n")
    get_property(target GLOBAL PROPERTY TM_LAYER_TARGET_${folder})
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.(cpp|h)$")
    list(APPEND all_sources ${sources})
  endforeach()
  set(layers_file ${CMAKE_BINARY_DIR}/layers.txt)
  file(CONFIGURE OUTPUT ${layers_file} CONTENT "${text}")
  set(stamp ${CMAKE_BINARY_DIR}/layers.checked)
  add_custom_command(
    OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${CMAKE_SOURCE_DIR} -DLAYERS_FILE=${layers_file} -DSTAMP=${stamp}
            -P ${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake
    DEPENDS ${all_sources} ${layers_file} ${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake
    COMMENT "Checking the folders' includes against their layers"
    VERBATIM)
  add_custom_target(tm_layer_check DEPENDS ${stamp})
  get_property(targets GLOBAL PROPERTY TM_LAYER_TARGETS)
  foreach(target IN LISTS targets)
    add_dependencies(${target} tm_layer_check)
  endforeach()
  set(TM_LAYERS_FILE ${layers_file} PARENT_SCOPE)
endfunction()
