# Where an installed korv keeps its parts. The host and the base library find the plug-ins
# and resources relative to the executable, so an installed tree (or an unpacked package)
# works from any prefix without environment variables.
include(GNUInstallDirs)

set(KORV_INSTALL_PRIVATE_LIBDIR ${CMAKE_INSTALL_LIBDIR}/korv)
set(KORV_INSTALL_PLUGINDIR ${KORV_INSTALL_PRIVATE_LIBDIR}/plugins)
set(KORV_INSTALL_RESOURCEDIR ${CMAKE_INSTALL_DATADIR}/korv/resources)

# Paths as seen from the folder holding the executables.
file(RELATIVE_PATH KORV_PLUGINDIR_FROM_BINDIR /${CMAKE_INSTALL_BINDIR} /${KORV_INSTALL_PLUGINDIR})
file(RELATIVE_PATH KORV_RESOURCEDIR_FROM_BINDIR /${CMAKE_INSTALL_BINDIR} /${KORV_INSTALL_RESOURCEDIR})
file(RELATIVE_PATH KORV_PRIVATE_LIBDIR_FROM_BINDIR /${CMAKE_INSTALL_BINDIR} /${KORV_INSTALL_PRIVATE_LIBDIR})
file(RELATIVE_PATH KORV_PRIVATE_LIBDIR_FROM_PLUGINDIR /${KORV_INSTALL_PLUGINDIR} /${KORV_INSTALL_PRIVATE_LIBDIR})
