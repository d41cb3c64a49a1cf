cmake_minimum_required(VERSION 3.25)
# ctest runs this: cmake -DBUILD=<build folder> -DFOLDER=<scratch> -P CheckPackage.cmake
# Makes the package; fails if lintian finds an error, or the package would lack what the program loads.
file(REMOVE_RECURSE ${FOLDER})
execute_process(COMMAND cpack -G DEB -B ${FOLDER} WORKING_DIRECTORY ${BUILD} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB package ${FOLDER}/*.deb)
list(LENGTH package count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "expected one package, found: ${package}")
endif()

execute_process(COMMAND lintian --allow-root --fail-on error ${package} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(SEND_ERROR "lintian ended with ${result}")
endif()

execute_process(COMMAND dpkg-deb --field ${package} Depends OUTPUT_VARIABLE depends COMMAND_ERROR_IS_FATAL ANY)
foreach(needed
    libcanberra0      # loaded for the click
    libqt6widgets6
    libqt6help6       # linked by the help window only
    libqt6printsupport6
    libqt6sql6-sqlite # loaded by Qt Help
    libqt6svg6)       # loaded for icons
  if(NOT depends MATCHES "(^|, )${needed}( \\(|,|\n|$)")
    message(SEND_ERROR "the package does not depend on ${needed}: ${depends}")
  endif()
endforeach()

execute_process(COMMAND dpkg-deb --extract ${package} ${FOLDER}/tree COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE binaries ${FOLDER}/tree/usr/bin/* ${FOLDER}/tree/usr/lib/*)
foreach(binary IN LISTS binaries)
  execute_process(COMMAND readelf --wide --dynamic --program-headers --sections ${binary}
      OUTPUT_VARIABLE header COMMAND_ERROR_IS_FATAL ANY)
  if(header MATCHES "RPATH|RUNPATH")
    message(SEND_ERROR "${binary} looks for libraries in a folder of its own")
  endif()
  if(header MATCHES "\\.symtab")
    message(SEND_ERROR "${binary} is not stripped")
  endif()
  # Loaded at an address that nobody can guess, with its tables of addresses read-only.
  if(NOT header MATCHES "GNU_RELRO" OR NOT header MATCHES "BIND_NOW" OR NOT header MATCHES "file type is DYN")
    message(SEND_ERROR "${binary} is not hardened")
  endif()
endforeach()
list(LENGTH binaries count)
if(NOT count EQUAL 3)
  message(SEND_ERROR "expected two programs and the help window, found: ${binaries}")
endif()

file(REMOVE_RECURSE ${FOLDER})
