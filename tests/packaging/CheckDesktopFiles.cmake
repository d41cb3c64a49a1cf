cmake_minimum_required(VERSION 3.25)
# ctest runs this: cmake -DPACKAGING=<its folder> -DMETAINFO=<the file made> -DFOLDER=<scratch> -P CheckDesktopFiles.cmake
# Fails if what the desktop reads about the program breaks that desktop's rules.

# Runs a validator, which must have nothing at all to say.
function(check)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0 OR said)
    message(SEND_ERROR "${ARGV}\nended with ${result}\n${said}")
  endif()
endfunction()

check(desktop-file-validate ${PACKAGING}/cramlet.desktop)

file(GLOB drawings ${PACKAGING}/icons/*.svg)
check(xmllint --noout ${drawings})

# The grammar of MIME packages stands at the head of the desktop's own.
file(READ /usr/share/mime/packages/freedesktop.org.xml types LIMIT 20000)
string(REGEX MATCH "<!DOCTYPE mime-info \\[(.*)\\]>" found "${types}")
file(MAKE_DIRECTORY ${FOLDER})
file(WRITE ${FOLDER}/mime-info.dtd "${CMAKE_MATCH_1}")
check(xmllint --noout --dtdvalid ${FOLDER}/mime-info.dtd ${PACKAGING}/cramlet-mime.xml)

# It tells of its success, and fails on a warning.
execute_process(
    COMMAND appstreamcli validate --no-net --no-color ${METAINFO}
    RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT result EQUAL 0)
  message(SEND_ERROR "appstreamcli ended with ${result}\n${said}")
endif()
