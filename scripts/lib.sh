# What this tree's commands share: the package lists, installing, configuring, listing sources.
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash

# Names that Debian 12 and 13 share. "build" is what CMake looks for, "run" what the program and
# ./run itself use, "desk" a screen and a sound device without hardware, "pipewire" another sound
# server for it, "test" what only the tests call, "access" the accessibility bus and what listens to
# it, "package" what makes the Debian package and checks it, "bench" what the benchmarks link,
# "peers" the programs that they start beside this one, "fuzz" the compiler of the fuzzers and what
# names the lines of a finding, "mutate" what finds mutants and keeps them from the system, "check"
# what looks at the sources, "bootstrap" what makes a bare system of either release.
packages_to_build=(g++ cmake ninja-build pkg-config qtbase5-dev qtmultimedia5-dev libqt5charts5-dev
    libxcb1-dev libfftw3-dev libsndfile1-dev)
packages_to_run=(libqt5multimedia5-plugins fonts-dejavu-core x11-utils pulseaudio-utils)
packages_for_desk=(xvfb xauth openbox pulseaudio sox ffmpeg procps)
packages_for_pipewire=(dbus-daemon pipewire pipewire-pulse wireplumber)
packages_to_test=(imagemagick locales python3 r-base-core groff-base)
packages_for_access=(at-spi2-core dbus-daemon gir1.2-atspi-2.0 python3-gi)
packages_to_package=(appstream cmark-gfm desktop-file-utils dpkg-dev fakeroot imagemagick
    librsvg2-bin lintian python3)
packages_to_bench=(libbenchmark-dev libgsl-dev libkissfft-dev libxcb-damage0-dev python3 util-linux)
packages_of_peers=(praat sonic-visualiser)
packages_to_fuzz=(clang libclang-rt-dev llvm)
packages_to_mutate=(bubblewrap python3-clang)
packages_to_check=(git clang-format clang-tidy shellcheck)
packages_to_bootstrap=(debootstrap git procps util-linux)
export packages_to_build packages_to_run packages_for_desk packages_for_pipewire packages_to_test
export packages_for_access packages_to_package packages_to_bench packages_of_peers packages_to_fuzz
export packages_to_mutate packages_to_check packages_to_bootstrap

root=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")

say() { printf '%s: %s\n' "${0##*/}" "$*"; }
complain() { say "$@" >&2; }

# need_packages NAME...: installs those that are missing. Where that cannot be done it says so and
# returns 0 all the same: another system may have the same things under other names.
need_packages() {
    local missing=() name
    for name in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null) == installed ]] ||
            missing+=("$name")
    done
    ((${#missing[@]})) || return 0
    if ! command -v apt-get >/dev/null; then
        complain "needed, under these names on Debian: ${missing[*]}; going on with what is here"
        return 0
    fi
    local as_root=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            complain "to be installed by root: ${missing[*]}; going on with what is here"
            return 0
        fi
        as_root=(sudo)
    fi
    say "installing ${missing[*]} (this may take minutes)"
    update_package_lists
    # Not a single package of the user's desktop may go: PulseAudio's server, for one, would push
    # out PipeWire's.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-remove \
        --no-install-recommends "${missing[@]}" </dev/null >/dev/null ||
        complain "could not install all of ${missing[*]}; going on with what is here"
}

# Once for each command is enough. To be called by need_packages only.
update_package_lists() {
    [[ -z ${package_lists_updated:-} ]] || return 0
    package_lists_updated=yes
    "${as_root[@]}" apt-get update -qq </dev/null ||
        complain "no fresh package lists to be had; trying the old ones"
}

# configure DIRECTORY CMAKE-ARGUMENT...: DIRECTORY is relative to the tree. A directory once
# configured keeps its generator.
configure() {
    local directory=$root/$1 generator=()
    if [[ ! -e $directory/CMakeCache.txt ]] && command -v ninja >/dev/null; then
        generator=(-G Ninja)
    fi
    cmake -S "$root" -B "$directory" "${generator[@]}" "${@:2}"
}

# Warnings stop a build where nobody reads them.
fatal_warnings() { if [[ ${CI:-} == true ]]; then printf ON; else printf OFF; fi; }

# Without the benchmarks, which configure_benchmarks() may have added.
configure_release() {
    configure build -DCMAKE_BUILD_TYPE=Release -DPELLION_BUILD_BENCHMARKS=OFF \
        -DPELLION_WARNINGS_AS_ERRORS="$(fatal_warnings)"
}

# To the release build, whose library they share, to see that they compile. They are measured in
# a directory of their own.
configure_benchmarks() { configure build -DPELLION_BUILD_BENCHMARKS=ON; }

# The fuzzers are optimised, but with assertions.
configure_fuzzers() {
    local compiler
    compiler=$(command -v clang++-14 clang++ | head -n 1 || true)
    configure build-fuzz -DCMAKE_CXX_COMPILER="${compiler:?is missing}" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_FLAGS_RELEASE="-O2 -g1" -DPELLION_SANITIZE=ON -DPELLION_BUILD_FUZZERS=ON \
        -DPELLION_BUILD_TESTS=OFF -DPELLION_WARNINGS_AS_ERRORS="$(fatal_warnings)"
}

# name_of_version_14 TOOL: prints the name of version 14 of clang-format or clang-tidy, that of
# Debian 12, or nothing; other versions break lines elsewhere and object to more. In CI a missing one
# is an error, so that a check never passes there by having looked at nothing.
name_of_version_14() {
    local name
    for name in "$1-14" "$1"; do
        if [[ $("$name" --version 2>/dev/null) == *"version 14."* ]]; then
            printf '%s' "$name"
            return
        fi
    done
    complain "skipped: needs $1 14, which is that of Debian 12"
    [[ ${CI:-} != true ]]
}

# build DIRECTORY [TARGET...]: everything where no target is named.
build() {
    local targets=()
    (($# == 1)) || targets=(--target "${@:2}")
    cmake --build "$root/$1" --parallel "$(nproc)" "${targets[@]}"
}

# list_sources PATTERN...: the tree's own files, tracked or about to be, each ended by a zero byte.
# Fails where there is none, so that a check never passes by having looked at nothing.
list_sources() {
    local file count=0
    while IFS= read -r -d '' file; do
        [[ -f $root/$file ]] || continue
        printf '%s\0' "$root/$file"
        ((++count))
    done < <(git -C "$root" ls-files -z --cached --others --exclude-standard -- "$@")
    ((count)) || { complain "found no source to check in $root"; return 1; }
}
