# Warnings are errors in our own code; installed libraries' headers are included as system headers.
add_library(tvwall_warnings INTERFACE)
target_compile_options(tvwall_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wnon-virtual-dtor
                                                 -Woverloaded-virtual -Werror $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

# g++ 12 falsely takes a string literal plus a std::string for an overlapping copy; later versions do not.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tvwall_warnings INTERFACE -Wno-restrict)
endif()
