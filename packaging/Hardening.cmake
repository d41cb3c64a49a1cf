# What makes an error in an installed program harder to exploit. The debug
# builds have the sanitizers instead. Debian's compiler makes programs
# position-independent by itself, which the test of the package checks.
set(release_options -D_FORTIFY_SOURCE=2 -fstack-protector-strong -Wformat -Werror=format-security)
add_compile_options("$<$<CONFIG:Release>:${release_options}>")
add_link_options("$<$<CONFIG:Release>:-Wl,-z,relro,-z,now>")
