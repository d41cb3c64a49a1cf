# One interface target carries every warning, so that no folder can forget one.
add_library(cramlet_flags INTERFACE)
target_compile_options(cramlet_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wswitch-enum)
target_compile_definitions(cramlet_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

# cramlet_module(<name> SOURCES <files> DEPS <targets> [PRIVATE_DEPS <targets>])
#
# Declares the folder's library cramlet_<name>. DEPS and PRIVATE_DEPS are the
# whole list of what the folder may use; PRIVATE_DEPS stay out of its headers.
function(cramlet_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPS;PRIVATE_DEPS")
  add_library(cramlet_${name} STATIC ${arg_SOURCES})
  target_include_directories(cramlet_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(cramlet_${name} PUBLIC ${arg_DEPS} PRIVATE ${arg_PRIVATE_DEPS} cramlet_flags)
endfunction()
