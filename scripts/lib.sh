# Shared by this tree's commands: package lists, installing, configuring, building, testing.
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2034 # the arrays are for the commands

# Names that Debian 12 and 13 share. "build" is what CMake looks for, "run" what the program and
# ./run use, "desk" a virtual screen and sound device, "pipewire" another sound server for it.
# "test" is what only the tests call, "access" the accessibility bus and its clients, "package" what
# builds and checks the Debian package. "bench" is what the benchmarks link and call, "peers" the
# programs that they compare with. "clang" is for sanitizers and fuzzers, and for line numbers in
# their findings; "mutate" finds mutants and runs them in a sandbox. "check" is for the sources,
# "campaigns" loads the machine, "bootstrap" makes a bare system of either release.
packages_to_build=(g++ cmake ninja-build pkg-config qtbase5-dev qtmultimedia5-dev libqt5charts5-dev
    libxcb1-dev libfftw3-dev libsamplerate0-dev libsndfile1-dev)
packages_to_run=(libqt5multimedia5-plugins fonts-dejavu-core x11-utils pulseaudio-utils)
packages_for_desk=(xvfb xauth openbox pulseaudio sox ffmpeg procps)
packages_for_pipewire=(dbus-daemon pipewire pipewire-pulse wireplumber)
packages_to_test=(xdotool imagemagick locales python3 r-base-core groff-base)
packages_for_access=(at-spi2-core dbus-daemon gir1.2-atspi-2.0 python3-gi)
packages_to_package=(appstream cmark-gfm desktop-file-utils dpkg-dev fakeroot imagemagick
    librsvg2-bin lintian python3)
packages_to_bench=(hyperfine libbenchmark-dev libgsl-dev libkissfft-dev libx11-dev python3 util-linux)
packages_of_peers=(praat sonic-visualiser)
packages_for_clang=(clang libclang-rt-dev llvm)
packages_to_mutate=(bubblewrap python3-clang)
packages_to_check=(git clang-format clang-tidy flake8 python3 shellcheck)
packages_for_campaigns=(stress-ng)
packages_to_bootstrap=(debootstrap git procps util-linux)

root=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")

say() { printf '%s: %s\n' "${0##*/}" "$*"; }
complain() { say "$@" >&2; }

# need_packages NAME...: installs those that are missing. If it cannot, it reports that and returns
# 0: another system may have the same packages under other names.
need_packages() {
    local missing=() name
    for name in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null) == installed ]] ||
            missing+=("$name")
    done
    ((${#missing[@]})) || return 0
    if ! command -v apt-get >/dev/null; then
        complain "needed, under these names on Debian: ${missing[*]}; continuing without them"
        return 0
    fi
    local as_root=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            complain "to be installed by root: ${missing[*]}; continuing without them"
            return 0
        fi
        as_root=(sudo)
    fi
    say "installing ${missing[*]} (this may take minutes)"
    update_package_lists
    # No package of the user's desktop may be removed: PulseAudio's server, for example, would
    # replace PipeWire's.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-remove \
        --no-install-recommends "${missing[@]}" </dev/null >/dev/null ||
        complain "could not install all of ${missing[*]}; continuing without them"
}

# Once per command is enough. To be called by need_packages only.
update_package_lists() {
    [[ -z ${package_lists_updated:-} ]] || return 0
    package_lists_updated=yes
    "${as_root[@]}" apt-get update -qq </dev/null ||
        complain "cannot update the package lists; trying the old ones"
}

# In CI warnings are errors, because no person reads them.
on_if_ci() { if [[ ${CI:-} == true ]]; then printf ON; else printf OFF; fi; }

# configure PRESET [CMAKE-ARGUMENT...]: PRESET is in CMakePresets.json.
configure() {
    cmake -S "$root" --preset "$1" -DPELLION_WARNINGS_AS_ERRORS="$(on_if_ci)" "${@:2}"
}

# build DIRECTORY [TARGET...]: builds everything if no target is named.
build() {
    local targets=()
    (($# == 1)) || targets=(--target "${@:2}")
    cmake --build "$root/$1" --parallel "$(nproc)" "${targets[@]}"
}

# Accepted reasons for skipping a test in CI: what a machine may lack, and limits of the sanitizers.
accepted_skips=(
    "This machine has no fused multiply-add."
    "This system has no huge pages to ask for."
    "too little memory for the longest sound"
    "a limit of the address space leaves the sanitizer none"
    "the desk runs PulseAudio" # test_session_tool_pipewire runs the skipped test
)

# run_tests DIRECTORY [CTEST-ARGUMENT...]: fails if a test fails, in CI also if one is skipped for a
# reason that is not accepted. One job more than there are processors: most of the time is waiting
# for sounds.
run_tests() {
    local status=0 jobs=$(($(nproc) + 1))
    (cd -- "$root/$1" && ctest --output-on-failure -j"$jobs" --no-tests=error "${@:2}") || status=$?
    report_skips "$root/$1/Testing/Temporary/LastTest.log" || status=1
    return "$status"
}

# report_skips LOG: counts and lists what CTest's log says was skipped.
report_skips() {
    local skips skip accepted status=0
    readarray -t skips < <(sed -n 's/^SKIP *: *//p' "$1")
    say "${#skips[@]} tests skipped"
    for skip in "${skips[@]}"; do
        complain "skipped: $skip"
        for accepted in "${accepted_skips[@]}"; do
            [[ $skip != *" $accepted" ]] || continue 2
        done
        [[ ${CI:-} != true ]] || status=1
    done
    ((status == 0)) || complain "CI accepts only: ${accepted_skips[*]/%/;}"
    return "$status"
}
