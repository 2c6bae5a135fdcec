# TamLib as a CMake package of its own: `cmake --install BUILD --prefix PREFIX` puts down the library, the
# embedded host and the stand-ins that it is built over, their interface headers, and what
# `find_package(TamLib)` reads. The program and its module are not installed; they run from the folder
# they were built in.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/tamlib)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/TamLib)

foreach(folder tam datastruct General GeomEnts GeomStructs ARX platform/arx platform/mfc platform/win32)
  if(WIN32 AND folder STREQUAL "platform/win32")
    continue()
  endif()
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/${folder}/ DESTINATION ${headers}/${folder} COMPONENT TamLib
          FILES_MATCHING PATTERN "*.h")
endforeach()
target_include_directories(tamlib INTERFACE
  $<INSTALL_INTERFACE:${headers}> $<INSTALL_INTERFACE:${headers}/platform/arx>)
target_include_directories(platform INTERFACE $<INSTALL_INTERFACE:${headers}/platform/mfc>)
if(NOT WIN32)
  target_include_directories(platform INTERFACE $<INSTALL_INTERFACE:${headers}/platform/win32>)
endif()
target_compile_features(tamlib INTERFACE cxx_std_17)
# Virtual functions of geometry read and write entities, so that its programs link a host. Within this
# build those that have one of their own name none.
target_link_libraries(tamlib INTERFACE $<INSTALL_INTERFACE:TamLib::arxhost>)

if(NOT WIN32)
  set_target_properties(arxhost platform PROPERTIES INSTALL_RPATH $ORIGIN)
endif()

install(TARGETS tamlib arxhost platform EXPORT TamLibTargets COMPONENT TamLib)
install(EXPORT TamLibTargets NAMESPACE TamLib:: FILE TamLibConfig.cmake DESTINATION ${package}
        COMPONENT TamLib)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/TamLibConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TamLibConfigVersion.cmake DESTINATION ${package} COMPONENT TamLib)
