# Warnings are errors in our own code; headers of installed libraries come in as system headers.
add_library(tvwall_warnings INTERFACE)
target_compile_options(tvwall_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wnon-virtual-dtor
                                                 -Woverloaded-virtual -Werror)
