# Well-kept packages of the distribution, wrapped as targets whose headers give no warnings of ours.
# For Windows the header-only ones are taken from the same packages and GoogleTest is built from its
# packaged source.

# Headers of /usr/include must not be seen by mingw as a whole, so single folders are linked in.
function(orlinth_header_package target)
  add_library(${target} INTERFACE)
  if(WIN32)
    set(folder ${CMAKE_BINARY_DIR}/packages/${target})
    file(MAKE_DIRECTORY ${folder})
    foreach(header ${ARGN})
      file(CREATE_LINK /usr/include/${header} ${folder}/${header} SYMBOLIC)
    endforeach()
    target_include_directories(${target} SYSTEM INTERFACE ${folder})
  endif()
endfunction()

orlinth_header_package(orlinth_boost boost)
orlinth_header_package(orlinth_cli11 CLI)

if(NOT WIN32)
  # Line editing at a terminal.
  find_library(LIBEDIT edit REQUIRED)
  add_library(orlinth_libedit INTERFACE)
  target_link_libraries(orlinth_libedit INTERFACE ${LIBEDIT})
endif()

if(ORLINTH_TESTS)
  add_library(orlinth_gtest INTERFACE)
  if(WIN32)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    target_link_libraries(orlinth_gtest INTERFACE gtest gmock)
  else()
    find_package(GTest REQUIRED)
    target_link_libraries(orlinth_gtest INTERFACE GTest::gtest GTest::gmock)
    add_library(orlinth_rapidcheck INTERFACE)
    target_link_libraries(orlinth_rapidcheck INTERFACE rapidcheck)
  endif()
endif()

if(ORLINTH_BENCH)
  find_package(benchmark REQUIRED)
endif()

if(WIN32)
  # The run-time libraries of mingw beside the programs, so that the folder runs by itself.
  foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
                    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${found}")
      set(found /usr/x86_64-w64-mingw32/lib/${dll})
    endif()
    file(COPY ${found} DESTINATION ${CMAKE_BINARY_DIR}/bin)
  endforeach()
endif()
