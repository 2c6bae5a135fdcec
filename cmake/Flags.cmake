# The flags that every target of ours carries: warnings as errors, results to the bit, source names
# relative to the root. `orlinth_flags` is linked privately, so that users of the library choose theirs.
add_library(orlinth_flags INTERFACE)

if(MSVC)
  target_compile_options(orlinth_flags INTERFACE /W4 /utf-8 /fp:precise /permissive- /EHsc)
  target_compile_definitions(orlinth_flags INTERFACE UNICODE _UNICODE NOMINMAX)
  if(ORLINTH_WERROR)
    target_compile_options(orlinth_flags INTERFACE /WX)
  endif()
  return()
endif()

target_compile_options(orlinth_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wold-style-cast
  -Woverloaded-virtual -Wnull-dereference -Wimplicit-fallthrough
  -ffp-contract=off          # a fused multiply-add rounds once where the expression as written rounds twice
  -fno-strict-aliasing       # point arrays are handed to the host as its own point records
  -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
target_compile_definitions(orlinth_flags INTERFACE UNICODE _UNICODE NOMINMAX)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ sees null pointers on paths that containers exclude.
  target_compile_options(orlinth_flags INTERFACE -Wno-null-dereference)
endif()
if(ORLINTH_WERROR)
  target_compile_options(orlinth_flags INTERFACE -Werror)
endif()

if(ORLINTH_SANITIZE)
  # Everything that is linked into one process has to agree on these, third parties excepted.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  add_link_options(-fsanitize=address,undefined)
endif()
