# Hardening flags of all shipped programs, as Debian uses them: a memory error ends the program
# instead of changing a measurement, and is hard to exploit by a prepared file.
# SPDX-License-Identifier: GPL-3.0-or-later
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
check_pie_supported()

# pellion_harden(compile|link FLAG): adds the flag if the compiler knows it.
function(pellion_harden kind flag)
    # CMake prints this variable's name.
    string(MAKE_C_IDENTIFIER "PELLION_HAS_${flag}" is_known)
    if(kind STREQUAL "compile")
        check_cxx_compiler_flag(${flag} ${is_known})
        if(${is_known})
            target_compile_options(pellion_options INTERFACE ${flag})
        endif()
    else()
        check_linker_flag(CXX ${flag} ${is_known})
        if(${is_known})
            target_link_options(pellion_options INTERFACE ${flag})
        endif()
    endif()
endfunction()

pellion_harden(compile -fstack-protector-strong)
pellion_harden(compile -fstack-clash-protection)
pellion_harden(compile -fcf-protection)
pellion_harden(link -Wl,-z,relro)
pellion_harden(link -Wl,-z,now)
pellion_harden(link -Wl,-z,noexecstack)
target_compile_definitions(pellion_options INTERFACE _GLIBCXX_ASSERTIONS)
# _FORTIFY_SOURCE needs an optimising build.
if(NOT PELLION_SANITIZE)
    set(is_optimising "$<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>>")
    target_compile_options(
        pellion_options INTERFACE "$<${is_optimising}:-U_FORTIFY_SOURCE>"
                                  "$<${is_optimising}:-D_FORTIFY_SOURCE=2>")
endif()
