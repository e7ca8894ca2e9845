# Writes examples.inc for examples_test.cpp. For each line "CALL => RESULT" in the comments of the public headers and
# in the folder cases, it has C++ code that makes this call and compares its result. CALL may begin with the value of
# its object, as in "FF FF, bin2HexString(0, 10)". In the table of tokens (Kel_StrTok.h), each row has TEXT and FLAGS
# instead of CALL. The examples of versions and of files are left out.
set(template [[
{
    struct Example : @name@Example {
        Example() : @name@Example{@object@} {}
        auto call() { return @call@; }
    };
    expectExample(R"-(@name@: @line@)-", R"-(@result@)-", resultOf<Example>);
}
]])
set(code "// NOLINTBEGIN: these are the lines of the headers.\n")
file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/KelRT/*.h ${CMAKE_CURRENT_SOURCE_DIR}/cases/*.txt)
list(FILTER files EXCLUDE REGEX "/Version\\.h$")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${files})
foreach(file IN LISTS files)
  cmake_path(GET file STEM name)
  file(STRINGS ${file} lines REGEX "=>|Files and environment")
  foreach(line IN LISTS lines)
    if(line MATCHES "Files and environment")
      break()
    elseif(NOT line MATCHES "^ *(/// )?(.*[^ ]) +=> +(\"([^\"\\]|\\\\.)*\"|([^ ]| [^ ])+)(  .*)?$")
      message(FATAL_ERROR "${file}: this line is no example: ${line}")
    endif()
    string(STRIP "${line}" line)
    set(call "${CMAKE_MATCH_2}")
    set(result "${CMAKE_MATCH_3}")
    set(object "")
    if(call MATCHES "^(.*[^ ])    +(.*)$") # TEXT and FLAGS
      set(call "tokens(R\"-(${CMAKE_MATCH_1})-\", ")
      string(REGEX REPLACE "([a-z]) ([a-z])" "\\1_\\2" flags "${CMAKE_MATCH_2}")
      string(APPEND call "${flags})")
    elseif(call MATCHES "^(.*), ([a-zA-Z0-9]+\\(.*\\))$")
      set(call "${CMAKE_MATCH_2}")
      set(object "${CMAKE_MATCH_1}")
      if(object MATCHES "^([0-9]+) bits,? ?(.*)$")
        set(object "${CMAKE_MATCH_1}, \"${CMAKE_MATCH_2}\"")
      elseif(object MATCHES "^\"")
        set(object "${object}s")
      else() # bytes in hexadecimal
        string(REPLACE " " "\\x" object "${object}")
        set(object "\"\\x${object}\"s")
      endif()
    endif()
    # Adds the output parameter of a conversion to text: uInt2BinStr(5, 4) becomes uInt2BinStr(5, 4, out).
    string(REGEX REPLACE "^([a-z][a-zA-Z]+2[a-zA-Z]*Str\\(.*)\\)$" "\\1, out)" call "${call}")
    string(CONFIGURE "${template}" example @ONLY)
    string(APPEND code "${example}")
  endforeach()
endforeach()
file(CONFIGURE OUTPUT examples.inc CONTENT "${code}// NOLINTEND\n" @ONLY)
