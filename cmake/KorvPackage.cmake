# Install rules and the Debian package: `cmake --build <dir> --target package` writes
# korv_<version>_<arch>.deb into the build folder.

# The host's own libraries are private to korv: they live beside its plug-ins, not in the
# system library folder, and every binary finds them through a RUNPATH relative to itself.
set(korv_private_libraries KorvBase KorvPlugin KorvControls KorvView3D WorkbenchCore)
set_target_properties(${korv_private_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(korv PROPERTIES INSTALL_RPATH "$ORIGIN/${KORV_PRIVATE_LIBDIR_FROM_BINDIR}")
set_target_properties(CamPluginFile PROPERTIES INSTALL_RPATH "$ORIGIN/${KORV_PRIVATE_LIBDIR_FROM_PLUGINDIR}")

install(TARGETS korv cnc-sim account-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS ${korv_private_libraries} LIBRARY DESTINATION ${KORV_INSTALL_PRIVATE_LIBDIR} NAMELINK_SKIP)
install(TARGETS CamPluginFile LIBRARY DESTINATION ${KORV_INSTALL_PLUGINDIR} NAMELINK_SKIP)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/host/view3d/MachineModel DESTINATION ${KORV_INSTALL_RESOURCEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/packaging/korv.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/korv.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/docs/user-guide.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/korv)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/korv OPTIONAL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korv)
set(CPACK_PACKAGE_VENDOR "Korv")
set(CPACK_PACKAGE_CONTACT "Korv developers <korv@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "File workbench for networked CNC machines")
set(CPACK_PACKAGE_DESCRIPTION "Moves NC programs between this computer and networked CNC machines over FTP, \
keeps folders in sync and shows the machine's live status. Includes cnc-sim, a machine simulator, and \
account-sim, a stand-in account service for device binding.")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
# Qt, libcurl and the C++ run-time come from dpkg-shlibdeps; it finds the private libraries
# through the RUNPATHs above. Fonts are not linked, so they are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${KORV_INSTALL_PRIVATE_LIBDIR})
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-wqy-microhei | fonts-noto-cjk")
include(CPack)
