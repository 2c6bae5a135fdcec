# Installs TamLib from BUILD, builds examples/ over it as a project of its own in WORK, and runs it. README.md
# shows both files of the example, and what it prints, to the letter.
#   cmake -DBUILD=... -DWORK=... -DGENERATOR=... -DCOMPILER=... -P PackageTest.cmake
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
file(REMOVE_RECURSE ${WORK})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE code)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "${ARGN} ended with ${code}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --component TamLib --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -S ${root}/examples -B ${WORK}/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH=${WORK}/prefix
    "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror")
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${WORK}/build/nearest_segment)

file(READ ${root}/README.md readme)
function(expect_in_readme heading text)
  string(FIND "${readme}" "```${heading}\n${text}```\n" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "README.md has no block \"${heading}\" with exactly this:\n${text}")
  endif()
endfunction()
file(READ ${root}/examples/nearest_segment.cpp code)
file(READ ${root}/examples/CMakeLists.txt build)
expect_in_readme("cpp" "${code}")
expect_in_readme("cmake" "${build}")
expect_in_readme("text" "${output}")
