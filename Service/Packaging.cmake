# What 'cmake --install' and 'cpack' put where: the program, a systemd unit, and a configuration to be filled in.
install(TARGETS kestrel-service RUNTIME DESTINATION bin COMPONENT service)
install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/../Docs/Service.md ${CMAKE_CURRENT_SOURCE_DIR}/../Docs/Models.md
  DESTINATION share/doc/kestrel-service COMPONENT service)
install(DIRECTORY Examples DESTINATION share/doc/kestrel-service COMPONENT service)

# What is packed is built before: the rest of the build has nothing to do with it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON CACHE INTERNAL "")
set(CPACK_COMPONENTS_ALL service)
set(CPACK_PACKAGE_NAME kestrel-service)
set(CPACK_PACKAGE_VERSION 0.1.0)
set(CPACK_PACKAGE_CONTACT "The Kestrel maintainers <kestrel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "A language model of your choice for Kestrel's editor plugin")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/Packages)
set(CPACK_STRIP_FILES ON)

if(CMAKE_SYSTEM_NAME STREQUAL Linux)
  install(FILES Packaging/kestrel-service.service DESTINATION lib/systemd/system COMPONENT service)
  install(FILES Packaging/kestrel-service.sysusers DESTINATION lib/sysusers.d RENAME kestrel-service.conf
    COMPONENT service)
  install(FILES Packaging/environment DESTINATION /etc/kestrel-service PERMISSIONS OWNER_READ OWNER_WRITE COMPONENT service)
  install(FILES Examples/local.toml DESTINATION /etc/kestrel-service RENAME model.toml COMPONENT service)

  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_SERVICE_PACKAGE_NAME kestrel-service)
  set(CPACK_DEBIAN_SERVICE_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION net)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_DEBIAN_SERVICE_PACKAGE_CONTROL_EXTRA
    "${CMAKE_CURRENT_SOURCE_DIR}/Packaging/conffiles;${CMAKE_CURRENT_SOURCE_DIR}/Packaging/postinst;${CMAKE_CURRENT_SOURCE_DIR}/Packaging/prerm")
  # The libraries that the program needs, by their packages. The sanitizers' is in none that a user has.
  if(HOST_SANITIZE)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_STRIP_FILES OFF)
    set(CPACK_DEBIAN_COMPRESSION_TYPE gzip)
  else()
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  endif()
else()
  set(CPACK_GENERATOR ZIP)
endif()
include(CPack)
