# Between installation and packing: what Debian's packages have otherwise than a plain installation. Read by cpack for what it
# has put into CPACK_TEMPORARY_INSTALL_DIRECTORY, a folder for each component.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(docs usr/share/doc)
set(names_Kelvane_Program kelvane)
set(names_Kelvane_Development libkelvane-dev)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

function(kelvane_pack path)
  execute_process(COMMAND gzip -9nf ${path} COMMAND_ERROR_IS_FATAL ANY)
  file(CHMOD ${path}.gz PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

foreach(component Kelvane_Program Kelvane_Development)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
  if(NOT EXISTS ${root})
    continue()
  endif()
  set(doc ${root}/${docs}/${names_${component}})
  file(MAKE_DIRECTORY ${doc})
  configure_file(${CPACK_KELVANE_SOURCE}/CHANGELOG.md ${doc}/changelog COPYONLY)
  file(WRITE ${doc}/changelog.Debian "kelvane (${CPACK_KELVANE_VERSION}) unstable; urgency=medium\n\n"
    "  * Made from the sources by cpack.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  kelvane_pack(${doc}/changelog)
  kelvane_pack(${doc}/changelog.Debian)

  # The licence, with its blank lines as a copyright file has them.
  file(READ ${CPACK_KELVANE_SOURCE}/LICENSE licence)
  string(REGEX REPLACE "^MIT License\n+Copyright [^\n]*\n+" "" licence "${licence}")
  string(STRIP "${licence}" licence)
  string(REPLACE "\n\n" "\n.\n" licence "${licence}")
  string(REPLACE "\n" "\n " licence "${licence}")
  file(STRINGS ${CPACK_KELVANE_SOURCE}/LICENSE owner REGEX "^Copyright ")
  string(REGEX REPLACE "^Copyright [(]c[)] " "" owner "${owner}")
  file(WRITE ${doc}/copyright "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"
    "Upstream-Name: Kelvane\n\nFiles: *\nCopyright: ${owner}\nLicense: Expat\n\nLicense: Expat\n ${licence}\n")
endforeach()

set(program ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/Kelvane_Program/usr)
if(EXISTS ${program}/share/man/man1/kelvane.1)
  kelvane_pack(${program}/share/man/man1/kelvane.1)
  file(RENAME ${program}/share/zsh/site-functions ${program}/share/zsh/vendor-completions)
  # The library lies where the system looks for it.
  file(RPATH_REMOVE FILE ${program}/bin/kelvane)
endif()
