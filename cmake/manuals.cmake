# Has a program print its manual pages and the scripts by which shells complete its command line:
# cmake -DPROGRAM=<program> -DTO=<directory> -P manuals.cmake
#
# Writes man1/, de/man1/, dxf2d.bash, _dxf2d and dxf2d.fish into the directory.
set(ENV{LC_ALL} C)

function(print_to file)
  execute_process(COMMAND ${PROGRAM} ${ARGN} OUTPUT_VARIABLE text RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ${ARGN}: ended with ${result}")
  endif()
  file(WRITE ${file} "${text}")
endfunction()

function(print_german file)
  set(ENV{LC_ALL} C.UTF-8)
  set(ENV{LANGUAGE} de)
  print_to(${TO}/de/man1/${file} ${ARGN})
  set(ENV{LC_ALL} C)
endfunction()

file(REMOVE_RECURSE ${TO})
print_to(${TO}/man1/dxf2d.1 help --man)
print_german(dxf2d.1 help --man)
execute_process(COMMAND ${PROGRAM} help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "\nCommands:\n(.*)\nOptions:\n" list "${help}")
string(REGEX MATCHALL "\n  [a-z]+" lines "\n${CMAKE_MATCH_1}")
if(NOT lines)
  message(FATAL_ERROR "${PROGRAM} help: lists no commands")
endif()
foreach(line IN LISTS lines)
  string(STRIP "${line}" command)
  print_to(${TO}/man1/dxf2d-${command}.1 help --man ${command})
  print_german(dxf2d-${command}.1 help --man ${command})
endforeach()
print_to(${TO}/dxf2d.bash completion bash)
print_to(${TO}/_dxf2d completion zsh)
print_to(${TO}/dxf2d.fish completion fish)
