# Installing and packaging: the programs, their desktop entries, the icon at the theme's sizes, the
# AppStream metadata, and a Debian package whose dependencies are Debian 12's own runtime packages.
# Included from the top-level CMakeLists.txt after the programs' directories.
include(GNUInstallDirs)

# The command-line client is a program people run too; the simulator is for development only.
install(TARGETS aerolume-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The icon theme's bitmap sizes, drawn from the SVG at build time by our own Qt SVG code.
set(AEROLUME_ICON_SIZES 16 22 24 32 48 64 128 256 512)
add_executable(aerolume-render-icon ${PROJECT_SOURCE_DIR}/tools/icons/RenderIcon.cpp)
aerolume_target_defaults(aerolume-render-icon)
target_link_libraries(aerolume-render-icon PRIVATE Qt6::Gui Qt6::Svg)

set(aerolume_icon_dir ${PROJECT_BINARY_DIR}/icons/hicolor)
set(aerolume_icon_files)
foreach(size IN LISTS AEROLUME_ICON_SIZES)
    list(APPEND aerolume_icon_files ${aerolume_icon_dir}/${size}x${size}/apps/aerolume.png)
    install(FILES ${aerolume_icon_dir}/${size}x${size}/apps/aerolume.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
add_custom_command(OUTPUT ${aerolume_icon_files}
    COMMAND aerolume-render-icon ${PROJECT_SOURCE_DIR}/app/aerolume.svg ${aerolume_icon_dir} ${AEROLUME_ICON_SIZES}
    DEPENDS aerolume-render-icon ${PROJECT_SOURCE_DIR}/app/aerolume.svg
    COMMENT "Drawing the application icon at ${AEROLUME_ICON_SIZES} pixels"
    VERBATIM)
add_custom_target(aerolume-icons ALL DEPENDS ${aerolume_icon_files})

# AppStream metadata. The home page and the screenshots (taken with the program's own "aerolume://shot"
# and "aerolume://widgetshots" commands) live on the web site, so they are listed only when one is set.
string(TIMESTAMP AEROLUME_RELEASE_DATE "%Y-%m-%d" UTC) # honours SOURCE_DATE_EPOCH
set(AEROLUME_METAINFO_URLS "")
if(AEROLUME_WEBSITE_URL)
    string(REGEX REPLACE "/+$" "" aerolume_site "${AEROLUME_WEBSITE_URL}")
    string(CONCAT AEROLUME_METAINFO_URLS
        "  <url type=\"homepage\">${aerolume_site}</url>\n"
        "  <screenshots>\n"
        "    <screenshot type=\"default\">\n"
        "      <caption>The aircraft near home on the map and in the list</caption>\n"
        "      <image>${aerolume_site}/screenshots/aerolume-shot.png</image>\n"
        "    </screenshot>\n"
        "    <screenshot>\n"
        "      <caption>The radar-scope widgets on the desktop</caption>\n"
        "      <image>${aerolume_site}/screenshots/widget-large.png</image>\n"
        "    </screenshot>\n"
        "  </screenshots>")
endif()
configure_file(${PROJECT_SOURCE_DIR}/app/org.aerolume.Aerolume.metainfo.xml.in
    ${PROJECT_BINARY_DIR}/org.aerolume.Aerolume.metainfo.xml @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/org.aerolume.Aerolume.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# The Debian package: `cpack -G DEB` in the build directory.
set(CPACK_PACKAGE_NAME aerolume)
set(CPACK_PACKAGE_VENDOR "The Aerolume developers")
set(CPACK_PACKAGE_CONTACT "${AEROLUME_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Aerolume developers <${AEROLUME_CONTACT}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "See every aircraft flying near your home")
set(CPACK_PACKAGE_DESCRIPTION
    "Aerolume shows every aircraft flying near a point you choose on a live map and in a list sorted nearest first, refreshed every 5 seconds from free community ADS-B networks, with route and photo details, notifications, a logbook of sightings, live air traffic control audio and radar-scope desktop widgets.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT) # aerolume_VERSION_ARCH.deb
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
if(AEROLUME_WEBSITE_URL)
    set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${AEROLUME_WEBSITE_URL}")
endif()
# The shared libraries come from dpkg-shlibdeps; what it cannot see is listed by hand: the QML modules
# the views import, the Qt plugins loaded at run time (GeoClue positioning; the SVG image plugin and the
# GStreamer media backend come with libqt6svg6 and libqt6multimedia6, which the programs link) and the GStreamer elements that play tower streams (HTTP source, ICY metadata, MP3
# decoding and the PulseAudio sink, which PipeWire serves too, are all in plugins-good on Debian 12).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(aerolume_runtime_packages
    qml6-module-qtquick
    qml6-module-qtquick-controls
    qml6-module-qtquick-templates
    qml6-module-qtquick-layouts
    qml6-module-qtquick-window
    qml6-module-qtqml
    qml6-module-qtqml-models
    qml6-module-qtqml-workerscript
    qml6-module-qtcharts
    qml6-module-qt-labs-platform
    libqt6positioning6-plugins
    gstreamer1.0-plugins-base
    gstreamer1.0-plugins-good)
list(JOIN aerolume_runtime_packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
# Wayland sessions run natively with the Wayland platform plugin; X11 needs nothing more. Links and the
# browser go through xdg-open; the computer's own location comes from GeoClue.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils, geoclue-2.0")
set(CPACK_GENERATOR DEB)
include(CPack)
