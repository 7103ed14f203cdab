# The compiler options of every target, as one interface target: warnings, semantics and paths.
# SPDX-License-Identifier: GPL-3.0-or-later
option(PELLION_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)

# The tree's location must not change a program. A compiler cache makes paths relative to the build.
file(RELATIVE_PATH source_from_build ${CMAKE_BINARY_DIR} ${PROJECT_SOURCE_DIR})

add_library(pellion_options INTERFACE)
# Contracted multiply-adds would make results depend on the machine. Qt's QSKIP, with one argument,
# is a variadic macro without a variadic argument, to which clang objects. Where a target is one
# translation unit, one file's locals may have the names of another file's constants, so -Wshadow is
# off there.
target_compile_options(
    pellion_options
    INTERFACE -Wall -Wextra -Wpedantic -Wconversion -ffp-contract=off
              -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fmacro-prefix-map=${source_from_build}=
              $<$<NOT:$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wshadow>
              $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
              $<$<BOOL:${PELLION_WARNINGS_AS_ERRORS}>:-Werror>)
