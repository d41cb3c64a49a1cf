cmake_minimum_required(VERSION 3.25)
# ctest runs this: cmake -DPAGES=<folder> -P CheckManPages.cmake
# Fails if formatting a manual page gives a warning, or a page is not there.
foreach(page cramlet.1 cramlet-open.1)
  execute_process(
      COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C.UTF-8 MANROFFSEQ= MANWIDTH=80
          man --warnings -E UTF-8 -l -Tutf8 -Z ${PAGES}/${page}
      RESULT_VARIABLE result OUTPUT_VARIABLE formatted ERROR_VARIABLE warnings)
  if(NOT result EQUAL 0 OR warnings OR NOT formatted)
    message(SEND_ERROR "${page}: ended with ${result}\n${warnings}")
  endif()
endforeach()
