# What every target of the tree is compiled with, as one interface target: warnings and semantics.
# SPDX-License-Identifier: GPL-3.0-or-later
option(PELLION_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)

add_library(pellion_options INTERFACE)
# Contracted multiply-adds would make results depend on the machine.
target_compile_options(
    pellion_options
    INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off
              $<$<BOOL:${PELLION_WARNINGS_AS_ERRORS}>:-Werror>)
