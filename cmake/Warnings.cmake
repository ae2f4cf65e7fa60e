# Warnings are errors in our own code; headers of installed libraries come in as system headers.
add_library(tvwall_warnings INTERFACE)
target_compile_options(tvwall_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wnon-virtual-dtor
                                                 -Woverloaded-virtual -Werror $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

# g++ 12 takes a text literal plus a std::string for an overlapping copy, falsely; later versions do not.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tvwall_warnings INTERFACE -Wno-restrict)
endif()
