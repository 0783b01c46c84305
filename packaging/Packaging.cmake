# Installation by `cmake --install` and the Debian package by `cpack`. Included last, and into the
# top folder, by the top CMakeLists.txt: CPack writes down the install rules known by then.
include(GNUInstallDirs)
find_program(ZENTA_GZIP gzip REQUIRED)

add_custom_target(zenta_compressed ALL)
# zenta_compress(file source name): install(FILES) takes `file`, which is `source` as `name`.gz.
function(zenta_compress file source name)
  set(compressed "${PROJECT_BINARY_DIR}/packaging/${name}.gz")
  add_custom_command(OUTPUT "${compressed}"
    COMMAND "${ZENTA_GZIP}" -9nc "${PROJECT_SOURCE_DIR}/${source}" > "${compressed}"
    DEPENDS "${PROJECT_SOURCE_DIR}/${source}" VERBATIM)
  add_custom_target("compressed_${name}" DEPENDS "${compressed}")
  add_dependencies(zenta_compressed "compressed_${name}")
  set(${file} "${compressed}" PARENT_SCOPE)
endfunction()

set(commands zenta)
if(ZENTA_TOOLS)
  list(APPEND commands zenta-export zenta-sim zenta-view)
  install(FILES docs/schema/zenta-results.schema.json DESTINATION "${CMAKE_INSTALL_DATADIR}/zenta")
endif()
install(TARGETS ${commands} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
foreach(command IN LISTS commands)
  zenta_compress(page docs/man/${command}.1 ${command}.1)
  install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endforeach()
zenta_compress(news CHANGELOG.md changelog)
install(FILES README.md CITATION.cff "${news}" packaging/debian/copyright
  docs/FORMATS.md docs/MODEL.md docs/SIMULATOR.md docs/TUTORIAL.md
  DESTINATION "${CMAKE_INSTALL_DOCDIR}")

# What only a Debian package has, under names that lie in Debian's own places.
zenta_compress(history packaging/debian/changelog changelog.Debian)
install(FILES "${history}" DESTINATION "share/doc/zenta" COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES packaging/debian/lintian-overrides DESTINATION "share/lintian/overrides" RENAME zenta
  COMPONENT debian EXCLUDE_FROM_ALL)

# The Debian version stands in the Debian changelog alone.
file(STRINGS packaging/debian/changelog head LIMIT_COUNT 1)
string(REGEX MATCH "\\(([0-9.]+)-([0-9]+)\\)" version "${head}")
if(NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "packaging/debian/changelog is of ${version}, the project of ${PROJECT_VERSION}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zenta)
set(CPACK_PACKAGE_VENDOR "The Zenta developers")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_CMAKE_PROJECTS
  "${PROJECT_BINARY_DIR};zenta;ALL;/" "${PROJECT_BINARY_DIR};zenta;debian;/")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_2}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Zenta developers <zenta@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# zenta-view draws with gnuplot, and says so where it is missing.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnuplot-nox | gnuplot")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "ionospheric delay and biases of one GNSS receiver")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"From the dual-frequency code and phase observations of one RINEX 2 file (GPS
and GLONASS) Zenta estimates, in one iterated weighted least-squares
adjustment, the vertical ionospheric delay as a chain of linear pieces in
time, the differential code biases P1-C1 and P2-C1 of the receiver or of the
satellites, and the ambiguity of every L4 phase arc, each with its formal
error.

zenta writes the report, zenta-view draws it on one page, zenta-export writes
it as JSON, CSV or Bias-SINEX, and zenta-sim makes input files with a known
truth.")
include(CPack)
