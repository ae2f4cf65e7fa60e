# Turns a mistake into a crash instead of a way in; scripts/check-built looks for each of these in the built files.
# Builds with sanitizers go without: sanitizers report the same mistakes in more detail, and checked library functions
# would hide some from them.
include(CheckPIESupported)
check_pie_supported()

if(NOT TVWALL_SANITIZE)
    add_compile_options(-fstack-protector-strong -fcf-protection
                        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>) # needs optimisation
    add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()
