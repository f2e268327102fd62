# What our own sources are compiled with; never imposed on users of the library, nor shown to a project that has this
# one as a part.
function(corvane_enable_warnings target)
  if(NOT PROJECT_IS_TOP_LEVEL AND NOT CORVANE_WERROR)
    return()
  endif()
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
    -Wmissing-declarations -Wcast-qual -Wundef
    "$<$<BOOL:${CORVANE_WERROR}>:-Werror>"
  )
endfunction()

# "address;undefined" or "thread": all that is built runs under these sanitizers.
set(CORVANE_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(CORVANE_SANITIZE)
  list(JOIN CORVANE_SANITIZE "," _sanitizers)
  add_compile_options(-fsanitize=${_sanitizers} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${_sanitizers})
endif()

# Where libFuzzer is at hand: the programs of tests/fuzz are built then.
set(CORVANE_FUZZ OFF)
if(CORVANE_SANITIZE MATCHES "address" AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  set(CORVANE_FUZZ ON)
endif()
