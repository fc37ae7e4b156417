# What an installed Tarnby cleaner is made of, and the Debian package of it. "packaging/build" makes the package.
include(GNUInstallDirs)

# Installing takes what is there and builds nothing: a test of the package does not rebuild the world first. The target
# "package" builds all of it all the same.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY TRUE)

set(tarnby_identifier com.corvash.tarnby-cleaner)
set(tarnby_made ${CMAKE_BINARY_DIR}/packaging)
set(tarnby_packaging ${CMAKE_SOURCE_DIR}/packaging)
set(tarnby_programs tarnby-cleaner-cli)
if(TARNBY_WINDOW)
  list(APPEND tarnby_programs tarnby-cleaner)
endif()

if(APPLE)
  if(TARNBY_WINDOW)
    configure_file(${tarnby_packaging}/macos/Info.plist.in ${tarnby_made}/Info.plist @ONLY)
    set_target_properties(tarnby-cleaner PROPERTIES MACOSX_BUNDLE TRUE
                                                    MACOSX_BUNDLE_INFO_PLIST ${tarnby_made}/Info.plist)
    install(TARGETS tarnby-cleaner BUNDLE DESTINATION .)
    install(TARGETS tarnby-cleaner-pictures DESTINATION tarnby-cleaner.app/Contents/MacOS)
    install(DIRECTORY resources/ DESTINATION tarnby-cleaner.app/Contents/Resources)
  endif()
  install(TARGETS tarnby-cleaner-cli)
  return()
endif()

# Adds a file that is made when the package's other files are: tarnby_make(VARIABLE FILE SOURCE COMMAND...).
function(tarnby_make made file source)
  add_custom_command(OUTPUT ${file} COMMAND ${ARGN} DEPENDS ${source} VERBATIM)
  set(${made} ${${made}} ${file} PARENT_SCOPE)
endfunction()

# As gzip makes it for packages: no name and no date in it, so that the same input gives the same bytes.
function(tarnby_compress made file source)
  tarnby_make(${made} ${file} ${source} sh -c "gzip -9nc \"$0\" > \"$1\"" ${source} ${file})
  set(${made} ${${made}} PARENT_SCOPE)
endfunction()

file(MAKE_DIRECTORY ${tarnby_made})
foreach(program IN LISTS tarnby_programs)
  configure_file(${tarnby_packaging}/man/${program}.1.in ${tarnby_made}/${program}.1 @ONLY)
  tarnby_compress(tarnby_made_files ${tarnby_made}/${program}.1.gz ${tarnby_made}/${program}.1)
  install(FILES ${tarnby_made}/${program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  # All addresses are bound before main begins and read-only from then on.
  target_link_options(${program} PRIVATE LINKER:-z,relro,-z,now)
endforeach()
install(TARGETS ${tarnby_programs})
if(TARNBY_WINDOW)
  # Nobody starts it but the window, which finds it from where it is itself.
  target_link_options(tarnby-cleaner-pictures PRIVATE LINKER:-z,relro,-z,now)
  install(TARGETS tarnby-cleaner-pictures DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/tarnby-cleaner)
endif()

set(tarnby_documents ${CMAKE_INSTALL_DATADIR}/doc/tarnby-cleaner)
tarnby_compress(tarnby_made_files ${tarnby_made}/changelog.gz ${tarnby_packaging}/debian/changelog)
install(FILES ${tarnby_made}/changelog.gz ${tarnby_packaging}/debian/copyright DESTINATION ${tarnby_documents})
install(FILES cli/completion/tarnby-cleaner-cli.bash RENAME tarnby-cleaner-cli
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

if(TARNBY_WINDOW)
  set(tarnby_described ${tarnby_packaging}/desktop/${tarnby_identifier})
  install(FILES ${tarnby_described}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${tarnby_described}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

  set(tarnby_icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  set(tarnby_drawing ${tarnby_packaging}/icons/${tarnby_identifier}.svg)
  install(FILES ${tarnby_drawing} DESTINATION ${tarnby_icons}/scalable/apps)
  # Desktops that cannot draw SVG take the nearest of these.
  find_program(rsvg_convert_program rsvg-convert REQUIRED)
  foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
    set(picture ${tarnby_made}/${size}x${size}/${tarnby_identifier}.png)
    file(MAKE_DIRECTORY ${tarnby_made}/${size}x${size})
    tarnby_make(tarnby_made_files ${picture} ${tarnby_drawing} ${rsvg_convert_program} --width ${size} --height ${size}
                --output ${picture} ${tarnby_drawing})
    install(FILES ${picture} DESTINATION ${tarnby_icons}/${size}x${size}/apps)
  endforeach()
endif()

# Read by the terminal program as well, so not the window's alone.
install(DIRECTORY resources/ DESTINATION ${CMAKE_INSTALL_DATADIR}/tarnby-cleaner)

add_custom_target(package_files ALL DEPENDS ${tarnby_made_files})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarnby-cleaner)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "disk cleaner for macOS-style home folders")
set(CPACK_PACKAGE_DESCRIPTION
"Finds what can be removed from a home folder without harm to the user's work,
shows it by category with sizes, and removes what is chosen, for good: caches
and logs of applications, leftovers of removed applications, browser data, mail
attachments, installers, large files and the Trash.
.
It looks only into folders that it was given, follows no symbolic link, removes
nothing that was not shown, and sends nothing anywhere. The terminal program
tarnby-cleaner-cli does the same for scripts and machines without a display.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_PRE_BUILD_SCRIPTS ${tarnby_packaging}/permissions.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Tarnby cleaner developers <developers@tarnby-cleaner.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS TRUE)
# What no program links but the window is poorer without: its typeface, and readers of the icons of applications and of
# desktops that draw theirs as SVG.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-inter, qt6-image-formats-plugins, libqt6svg6")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
include(CPack)
