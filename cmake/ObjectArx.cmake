# The build that a draughtsman loads: MSVC with the host maker's kit, found in ORLINTH_OBJECTARX.
# Nothing of `platform` or `host` takes part.
if(NOT MSVC)
  message(FATAL_ERROR "The kit in ORLINTH_OBJECTARX needs MSVC; this is ${CMAKE_CXX_COMPILER_ID}.")
endif()
if(NOT EXISTS ${ORLINTH_OBJECTARX}/inc)
  message(FATAL_ERROR "${ORLINTH_OBJECTARX} has no folder 'inc': set ORLINTH_OBJECTARX to the kit's folder.")
endif()
set(CMAKE_MFC_FLAG 2)
add_library(objectarx INTERFACE)
target_include_directories(objectarx INTERFACE ${ORLINTH_OBJECTARX}/inc ${ORLINTH_OBJECTARX}/inc-x64)
target_link_directories(objectarx INTERFACE ${ORLINTH_OBJECTARX}/lib-x64)
target_compile_definitions(objectarx INTERFACE _AFXDLL _AFXEXT)
file(GLOB kit_libraries ${ORLINTH_OBJECTARX}/lib-x64/acad.lib ${ORLINTH_OBJECTARX}/lib-x64/ac*.lib
     ${ORLINTH_OBJECTARX}/lib-x64/rxapi.lib)
target_link_libraries(objectarx INTERFACE ${kit_libraries} winmm version)

orlinth_add_library()
orlinth_add_module(ZEPTOrlinth ${CMAKE_SOURCE_DIR}/app)
