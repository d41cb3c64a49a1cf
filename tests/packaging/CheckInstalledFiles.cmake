cmake_minimum_required(VERSION 3.25)
# ctest runs this: cmake -DBUILD=<build folder> -DFOLDER=<scratch> -DLIBDIR=<libraries, below the prefix>
# -P CheckInstalledFiles.cmake
# Installs below a prefix, and with DESTDIR, and fails if there is a file too many or too few.
set(expected
    bin/cramlet
    bin/cramlet-open
    ${LIBDIR}/cramlet/cramlet-help.so
    share/applications/cramlet.desktop
    share/cramlet/Click.wav
    share/cramlet/Cramlet.qch
    "share/cramlet/States and Capitals.crl"
    "share/cramlet/Using Cramlet.crl"
    share/doc/cramlet/changelog.Debian.gz
    share/doc/cramlet/changelog.gz
    share/doc/cramlet/copyright
    share/icons/hicolor/scalable/apps/cramlet.svg
    share/icons/hicolor/scalable/mimetypes/application-x-cramlet.svg
    share/man/man1/cramlet-open.1.gz
    share/man/man1/cramlet.1.gz
    share/metainfo/org.cramlet.cramlet.metainfo.xml
    share/mime/packages/cramlet.xml)
foreach(side 16 22 24 32 48 64 128 256 512)
  list(APPEND expected
      share/icons/hicolor/${side}x${side}/apps/cramlet.png
      share/icons/hicolor/${side}x${side}/mimetypes/application-x-cramlet.png)
endforeach()
list(SORT expected)

# Fails unless exactly the expected files lie below the prefix <root>, none of them empty.
function(check_tree root)
  file(GLOB_RECURSE found LIST_DIRECTORIES false RELATIVE ${root} ${root}/*)
  list(SORT found)
  set(missing ${expected})
  list(REMOVE_ITEM missing ${found})
  set(extra ${found})
  list(REMOVE_ITEM extra ${expected})
  foreach(file IN LISTS found)
    file(SIZE ${root}/${file} size)
    if(size EQUAL 0)
      message(SEND_ERROR "${root}/${file} is empty")
    endif()
  endforeach()
  if(missing OR extra)
    message(SEND_ERROR "below ${root}\nmissing: ${missing}\nnot expected: ${extra}")
  endif()
endfunction()

file(REMOVE_RECURSE ${FOLDER})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/prefix
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
check_tree(${FOLDER}/prefix)

execute_process(COMMAND ${CMAKE_COMMAND} -E env DESTDIR=${FOLDER}/staged ${CMAKE_COMMAND} --install ${BUILD} --prefix /usr
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
check_tree(${FOLDER}/staged/usr)
file(GLOB beside ${FOLDER}/staged/*)
if(NOT beside STREQUAL "${FOLDER}/staged/usr")
  message(SEND_ERROR "installed outside the prefix: ${beside}")
endif()

file(REMOVE_RECURSE ${FOLDER})
