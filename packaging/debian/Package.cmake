# The Debian package: CPack's settings, and the files that only Debian requires.
# SPDX-License-Identifier: GPL-3.0-or-later
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pellion)
set(CPACK_PACKAGE_VENDOR "Vantaro Lab")
set(CPACK_PACKAGE_CONTACT ${PELLION_MAINTAINER})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "frequency-matching experiment for hearing laboratories")
set(CPACK_PACKAGE_DESCRIPTION
    "Pellion runs a psychoacoustic experiment with two people at one computer. The
experimenter chooses a target sound and sees its waveform, its amplitude
spectrum and the trend of the matches. The listener plays the target, plays a
sinusoid at a frequency of their own choice, and repeats until both have the
same pitch. The responses are written to a text file.
.
The package also holds pellion-target, which makes target files, converts
other sound files to targets and reports whether a file is read as intended,
pellion-session, which checks a computer before a session and recovers
responses that were not saved, a guide, and example targets.")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${PELLION_HOMEPAGE})
# The linked libraries, and the sound plugin, which is loaded at run time.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt5multimedia5-plugins)
# A sound server (PipeWire brings pw-top), the tools that the guide and "pellion-session check" name,
# and what runs the analysis.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "pipewire-pulse | pulseaudio, pulseaudio-utils, alsa-utils, pavucontrol, python3 | r-base-core")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "sox, ffmpeg, r-base-core")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Adds the files beside this one with the names and in the form that Debian requires.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/FinishPackage.cmake)

file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/changelog newest_entry LIMIT_COUNT 1)
if(NOT newest_entry MATCHES "^pellion \\(${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}\\)")
    message(FATAL_ERROR "packaging/debian/changelog does not begin with this version")
endif()

include(CPack)
