# Checks that README.md shows examples/embed.cpp exactly: one of its ```cpp blocks must hold the
# whole file, byte for byte (line endings aside), so that the example in the README is the one
# that is compiled and run.
#   cmake -DREADME=README.md -DEXAMPLE=examples/embed.cpp -P CheckReadmeExample.cmake
cmake_minimum_required(VERSION 3.20)
foreach(_var README EXAMPLE)
  if(NOT DEFINED ${_var} OR NOT EXISTS "${${_var}}")
    message(FATAL_ERROR "CheckReadmeExample: ${_var} is not an existing file")
  endif()
endforeach()
file(READ "${README}" _readme)
file(READ "${EXAMPLE}" _example)
string(REPLACE "\r\n" "\n" _readme "${_readme}")
string(REPLACE "\r\n" "\n" _example "${_example}")

set(_fence "```cpp\n")
string(LENGTH "${_fence}" _fence_len)
set(_rest "${_readme}")
set(_blocks 0)
while(TRUE)
  string(FIND "${_rest}" "${_fence}" _start)
  if(_start EQUAL -1)
    break()
  endif()
  math(EXPR _start "${_start} + ${_fence_len}")
  string(SUBSTRING "${_rest}" ${_start} -1 _rest)
  # The block ends at the first fence that opens a line; the newline before it belongs to the
  # block, as the file's last newline does.
  string(FIND "${_rest}" "\n```" _end)
  if(_end EQUAL -1)
    message(FATAL_ERROR "${README}: a ```cpp block is not closed")
  endif()
  math(EXPR _end "${_end} + 1")
  string(SUBSTRING "${_rest}" 0 ${_end} _block)
  string(SUBSTRING "${_rest}" ${_end} -1 _rest)
  math(EXPR _blocks "${_blocks} + 1")
  if("${_block}" STREQUAL "${_example}")
    message(STATUS "${README}: block ${_blocks} is ${EXAMPLE}")
    return()
  endif()
endwhile()
message(FATAL_ERROR "${README}: none of its ${_blocks} ```cpp blocks is exactly ${EXAMPLE}; "
                    "copy the file into the README's embedding block")
