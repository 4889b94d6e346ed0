# Writes the module definition file (.def) of the names in a version script, for the linker for Windows.
#
# cmake -DNM=<nm> -DMAP=<version script> -DOBJECTS=<object;...> -DDEFINITIONS=<file to write> -P ...
#
# The version script names C++ functions without their parameters; the objects have the whole names.
# A name that no object defines, or that several functions have, is an error.

file(READ ${MAP} map)
string(REGEX REPLACE "/\\*.*\\*/" "" map "${map}")
# A semicolon would end an element of a list.
string(REPLACE ";" "," map "${map}")
execute_process(COMMAND ${NM} --defined-only --extern-only --format=posix ${OBJECTS}
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)

set(exports "")
string(REGEX MATCHALL "[A-Za-z0-9_]+\\*?," names "${map}")
foreach(name IN LISTS names)
  string(REGEX REPLACE "\\*?," "" plain "${name}")
  if(name MATCHES "\\*,")
    string(LENGTH ${plain} length)
    string(REGEX MATCHALL "\n_Z${length}${plain}[A-Za-z0-9_]* T " found "\n${symbols}")
  else()
    string(REGEX MATCHALL "\n${plain} T " found "\n${symbols}")
  endif()
  list(LENGTH found count)
  if(NOT count EQUAL 1)
    message(FATAL_ERROR "${plain} of ${MAP} is defined ${count} times; expected 1")
  endif()
  string(REGEX REPLACE "[\n ]|T $" "" symbol "${found}")
  string(APPEND exports "  ${symbol}\n")
endforeach()
file(WRITE ${DEFINITIONS} "LIBRARY dxf2d_plugin\nEXPORTS\n${exports}")
