# What `cmake --install` puts where, and the Debian package of it: `cmake --build BUILD --target deb`.
include(GNUInstallDirs)
# Installing and packing build nothing: the two programs have to be there, the tests needn't.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

block()
set(data "${CMAKE_INSTALL_DATADIR}")
set(packaging "${CMAKE_SOURCE_DIR}/packaging")
set(texts "${CMAKE_SOURCE_DIR}/Velmora/Studio/Shell/texts")
set(id com.halvenor.Velmora)

install(TARGETS velmora velmora-render RUNTIME)
install(FILES "${packaging}/${id}.desktop" DESTINATION "${data}/applications")
install(FILES "${packaging}/${id}.metainfo.xml" DESTINATION "${data}/metainfo")
install(FILES "${packaging}/velmora.1" "${packaging}/velmora-render.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${texts}/ThirdPartyNotices.txt" "${texts}/Privacy.txt" DESTINATION "${data}/doc/velmora")
install(FILES "${packaging}/icons/${id}.svg" DESTINATION "${data}/icons/hicolor/scalable/apps")
foreach(size 16 24 32 48 64 128 256)
  install(FILES "${packaging}/icons/${size}.png" DESTINATION "${data}/icons/hicolor/${size}x${size}/apps"
    RENAME ${id}.png)
endforeach()

# What is linked tells its packages itself; the fonts are those that the project is built with.
file(STRINGS "${packaging}/packages.sh" fonts REGEX fonts-)
string(REGEX MATCHALL "fonts-[a-z0-9-]+" fonts "${fonts}")
list(JOIN fonts ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-xdgdesktopportal-platformtheme")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_CONTACT "Orrin")
set(CPACK_PACKAGE_VENDOR "Orrin")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "small desktop music studio")
set(CPACK_PACKAGE_DESCRIPTION "Drums on a step grid, melodies in a piano roll, recorded and imported audio, clips of them all
on a timeline of beats, a mixer with equalizer, delay and reverb, export as WAV. The sounds are
its own: a polyphonic synthesizer and a synthesized drum kit. velmora-render turns projects into
WAV files without a window.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
include(CPack)
endblock()
add_custom_target(deb COMMAND sh -c "umask 022 && ${CMAKE_CPACK_COMMAND}" DEPENDS velmora velmora-render VERBATIM
  USES_TERMINAL)  # the package's folders take their rights from the umask
