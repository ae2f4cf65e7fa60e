# The Debian packages, one for each component, which cpack makes from the build folder.
set(TVWALL_PACKAGE_CONTACT "TV-wall decoder plug-in developers <developers@tvwall-decoder-plugin.invalid>"
    CACHE STRING "Name and mail address of who answers for the Debian packages; the default reaches nobody")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_CONTACT ${TVWALL_PACKAGE_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # which is the first line of each description
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL plugin tools development)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PLUGIN_PACKAGE_NAME tvwall-decoder-plugin)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SECTION video)
set(CPACK_COMPONENT_PLUGIN_DESCRIPTION "\
plug-in with which a video host drives a TV-wall decoder
A video-management server loads this device plug-in to drive one TV-wall
decoder over TCP.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME tvwall-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION video)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "\
stand-in host and simulated decoder for a TV wall
tvwall-host loads the TV-wall decoder plug-in and drives a decoder from the
console; tvwall-decoder simulates one, keeps a wall in memory and misbehaves
on demand. With them comes a Wireshark dissector of their link.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS tshark)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME tvwall-host-interface-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "\
what a host of the TV-wall decoder plug-in is built with
Headers of the interface between a video-management server and the TV-wall
decoder plug-in, a library of its commands and answers, packages for CMake
and pkg-config, an example host and the documentation of every byte.")

# Up to 0.3, tvwall-decoder-plugin was a single package and held the files of all three.
foreach(component TOOLS DEVELOPMENT)
    set(CPACK_DEBIAN_${component}_PACKAGE_SOURCE ${PROJECT_NAME})
    set(CPACK_DEBIAN_${component}_PACKAGE_DEPENDS "tvwall-decoder-plugin (= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_${component}_PACKAGE_BREAKS "tvwall-decoder-plugin (<< 0.4.0~)")
    set(CPACK_DEBIAN_${component}_PACKAGE_REPLACES "tvwall-decoder-plugin (<< 0.4.0~)")
endforeach()
string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libtinyxml2-dev") # the records library is static
include(CPack)

foreach(component PLUGIN TOOLS DEVELOPMENT)
    set(package ${CPACK_DEBIAN_${component}_PACKAGE_NAME})
    string(TOLOWER ${component} lower)
    set(changelog ${CMAKE_CURRENT_BINARY_DIR}/${lower}/changelog)
    configure_file(changelog.in ${changelog} @ONLY)
    add_custom_command(OUTPUT ${changelog}.gz DEPENDS ${changelog} COMMAND gzip -9nkf ${changelog} VERBATIM)
    list(APPEND changelogs ${changelog}.gz)
    file(GLOB readme ${lower}/README.md) # where to begin; the plug-in has that of the whole project
    install(FILES ${changelog}.gz copyright ${readme} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${lower})
endforeach()
add_custom_target(package_changelogs ALL DEPENDS ${changelogs})
