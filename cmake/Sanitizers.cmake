# Address, leak and undefined-behaviour checking for a whole build tree.
# SPDX-License-Identifier: GPL-3.0-or-later
option(PELLION_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

if(PELLION_SANITIZE)
    target_compile_options(pellion_options INTERFACE -fsanitize=address,undefined
                                                     -fno-sanitize-recover=all
                                                     -fno-omit-frame-pointer)
    target_link_options(pellion_options INTERFACE -fsanitize=address,undefined)
endif()
