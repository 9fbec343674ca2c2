# Small Windows programs that run under Wine, cross-built with Debian's mingw-w64 when it is
# installed (TM_MINGW_CXX found). Each is a CMake project of its own, built with cmake/MinGW.cmake.
find_program(TM_MINGW_CXX NAMES x86_64-w64-mingw32-g++ x86_64-w64-mingw32-g++-posix)
include(ExternalProject)

# Builds the project in `source`, whose program `exe` lands in `output`. The sub-build runs at
# every build, so that it sees its own sources change; when nothing has, it does nothing.
function(tm_windows_program name source output exe)
  ExternalProject_Add(${name}
    SOURCE_DIR ${source}
    BINARY_DIR ${CMAKE_BINARY_DIR}/windows/${name}
    CMAKE_ARGS -DCMAKE_TOOLCHAIN_FILE=${CMAKE_SOURCE_DIR}/cmake/MinGW.cmake -DCMAKE_CXX_COMPILER=${TM_MINGW_CXX}
               -DCMAKE_BUILD_TYPE=Release -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${output}
    BUILD_BYPRODUCTS ${output}/${exe}
    INSTALL_COMMAND ""
    BUILD_ALWAYS ON)
endfunction()
