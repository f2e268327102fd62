# What the library is built for and with. Whoever lacks something reads what, and how to get it.

# The row buffer's layout, which programs see, is that of 64-bit little-endian machines; and which symbols leave the
# library is a matter of ELF and GNU's linker script.
function(corvane_check_system)
  if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    message(FATAL_ERROR "Corvane is built for Linux, and this is ${CMAKE_SYSTEM_NAME}.")
  endif()
  if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8 OR NOT CMAKE_CXX_BYTE_ORDER STREQUAL "LITTLE_ENDIAN")
    message(FATAL_ERROR "Corvane is built for 64-bit little-endian machines: the layout of its row buffer is theirs. "
      "The compiler ${CMAKE_CXX_COMPILER} builds for another kind. Choose one with -DCMAKE_CXX_COMPILER=..., or leave "
      "out options like -m32.")
  endif()
endfunction()

# Whether a compiler serves is asked by what the sources need last: numbers in <charconv>, which came to the standard
# library of gcc 11. Clang uses that library, too.
function(corvane_check_compiler)
  include(CheckCXXSourceCompiles)
  set(CMAKE_CXX_STANDARD 17)
  check_cxx_source_compiles("
    #include <charconv>
    #include <optional>
    #include <string_view>
    int main() {
      std::string_view const text = \"1.5\";
      std::optional<double> number = 0.0;
      char out[32];
      auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
      return std::to_chars(out, out + 32, *number).ec == error && end != nullptr ? 0 : 1;
    }"
    CORVANE_COMPILER_SERVES)
  if(NOT CORVANE_COMPILER_SERVES)
    unset(CORVANE_COMPILER_SERVES CACHE)  # asked again next time
    message(FATAL_ERROR "Corvane needs a C++17 compiler with the standard library of gcc 11 or later (gcc 12 and "
      "clang 14 are tested). This one does not serve: ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}, "
      "${CMAKE_CXX_COMPILER}.\n"
      "  Debian, Ubuntu:  apt-get install g++\n"
      "  another one that is installed:  cmake --fresh -DCMAKE_CXX_COMPILER=g++-12 ...")
  endif()
endfunction()

# Gives the target Boost::headers.
macro(corvane_find_boost)
  find_package(Boost 1.74 QUIET)
  if(NOT TARGET Boost::headers OR NOT Boost_FOUND)
    set(CORVANE_BOOST_SEEN "none was found")
    if(Boost_VERSION_STRING)
      set(CORVANE_BOOST_SEEN "${Boost_VERSION_STRING} was found")
    endif()
    message(FATAL_ERROR "Corvane needs the headers of Boost 1.74 or later, of its library date_time; "
      "${CORVANE_BOOST_SEEN}.\n"
      "  Debian, Ubuntu:  apt-get install libboost-date-time-dev\n"
      "  Fedora:          dnf install boost-devel\n"
      "  one of your own: cmake --fresh -DBOOST_ROOT=FOLDER ...")
  endif()
endmacro()
