# Targets made from the floors of the house: the library and modules that the host loads.

# tamlib: everything from `ARX` down to `tam` and `datastruct`, one static archive, so
# that a program takes only the objects it uses. Operations over the host stand in files of their own;
# who uses them links `arxhost` too.
function(orlinth_add_library)
  file(GLOB sources CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/tam/*.cpp ${CMAKE_SOURCE_DIR}/datastruct/*.cpp
    ${CMAKE_SOURCE_DIR}/General/*.cpp ${CMAKE_SOURCE_DIR}/GeomEnts/*.cpp
    ${CMAKE_SOURCE_DIR}/GeomStructs/*.cpp ${CMAKE_SOURCE_DIR}/ARX/*.cpp)
  add_library(tamlib STATIC ${sources})
  target_include_directories(tamlib PUBLIC $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}>)
  if(ORLINTH_OBJECTARX)
    target_link_libraries(tamlib PRIVATE orlinth_flags PUBLIC objectarx)
  else()
    target_include_directories(tamlib PUBLIC $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/platform/arx>)
    target_link_libraries(tamlib PRIVATE $<BUILD_INTERFACE:orlinth_flags> PUBLIC platform)
  endif()
endfunction()

# A module that the host loads at run time: NAME.arx from all sources of FOLDER. It is never linked
# into anything. Only its two entry points are visible.
function(orlinth_add_module name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  add_library(${name} MODULE ${sources})
  set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".arx"
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN OFF)
  target_link_libraries(${name} PRIVATE orlinth_flags tamlib)
  if(NOT ORLINTH_OBJECTARX)
    target_link_libraries(${name} PRIVATE arxhost)
    if(NOT WIN32)
      target_link_options(${name} PRIVATE -Wl,--exclude-libs,ALL)
    endif()
  endif()
endfunction()
