# Run by CPack on the tree of the package: adds the files that only Debian requires, and changes the
# others as Debian requires.
# SPDX-License-Identifier: GPL-3.0-or-later
cmake_minimum_required(VERSION 3.19)
set(programs ${CPACK_TEMPORARY_DIRECTORY}/usr/bin)
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(sources ${CMAKE_CURRENT_LIST_DIR})

configure_file(${sources}/copyright ${share}/doc/pellion/copyright COPYONLY)
configure_file(${sources}/changelog ${share}/doc/pellion/changelog.Debian COPYONLY)
configure_file(${sources}/../../CHANGELOG.md ${share}/doc/pellion/changelog COPYONLY)
configure_file(${sources}/doc-base ${share}/doc-base/pellion COPYONLY)
configure_file(${sources}/lintian-overrides ${share}/lintian/overrides/pellion COPYONLY)

file(GLOB texts ${share}/man/man1/*.1 ${share}/doc/pellion/changelog*)
execute_process(COMMAND gzip --best --no-name --force ${texts} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB binaries ${programs}/*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${binaries}
                        COMMAND_ERROR_IS_FATAL ANY)
# Independent of the umask of the user who builds the package.
execute_process(COMMAND chmod -R ug-s,u=rwX,go=rX ${CPACK_TEMPORARY_DIRECTORY}
                        COMMAND_ERROR_IS_FATAL ANY)
# The same sources make the same package: CPack gives all files this time, by this variable.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(
        COMMAND dpkg-parsechangelog --file ${sources}/changelog --show-field Timestamp
        OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(ENV{SOURCE_DATE_EPOCH} ${date})
endif()
