# Checks that README.md shows the whole program CLIENT, which is compiled and run as an example.
cmake_minimum_required(VERSION 3.22)

file(READ ${CLIENT} program)
string(REGEX REPLACE "^.*//! \\[example\\]\n(.*)//! \\[example\\]\n$" "\\1" program "${program}")
file(READ ${README} readme)
string(FIND "${readme}" "```cpp\n${program}```\n" place)
if(place EQUAL -1)
  message(FATAL_ERROR "README.md does not show\n${program}")
endif()
