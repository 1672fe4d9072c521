#!/usr/bin/env bash
# One entry point for setting up, building, testing and benchmarking KEZVisualization.
#
#   ./build.sh deps     install the Debian packages the project needs (when missing)
#   ./build.sh build    configure and build into build/
#   ./build.sh test     deps, build, the whole test suite, then the whole suite
#                       again under AddressSanitizer and UndefinedBehaviorSanitizer
#   ./build.sh bench    deps, a Release build into build-release/, every benchmark
#   ./build.sh tsan     deps, a ThreadSanitizer build into build-tsan/, its tests
#   ./build.sh demo     deps, a Release build of the library and kezvis into
#                       build-release/, then "kezvis gallery" writes out/gallery.*
#   ./build.sh docs     the API reference with Doxygen into build-docs/html;
#                       any warning (such as undocumented public API) fails it
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
jobs="${KEZ_JOBS:-$(nproc)}"

packages=(
    build-essential cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev libgl-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    libcgal-dev
    fonts-dejavu-core
    qt6-tools-dev qt6-l10n-tools
    doxygen
)

install_dependencies() {
    local missing=()
    for package in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" \
            || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -q
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
}

configure_and_build() {
    local dir="$1"; shift
    cmake -S "$here" -B "$dir" -G Ninja "$@"
    cmake --build "$dir" -j "$jobs"
}

run_tests() {
    local dir="$1"
    ctest --test-dir "$dir" -j "$jobs" --output-on-failure --timeout 600
}

command="${1:-build}"
case "$command" in
    deps)
        install_dependencies
        ;;
    build)
        install_dependencies
        configure_and_build "$here/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo
        ;;
    test)
        install_dependencies
        configure_and_build "$here/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo
        run_tests "$here/build"
        configure_and_build "$here/build-sanitize" -DCMAKE_BUILD_TYPE=Debug \
            -DKEZ_SANITIZE=ON -DKEZ_BUILD_BENCHMARKS=OFF -DKEZ_BUILD_EXAMPLES=OFF
        run_tests "$here/build-sanitize"
        ;;
    bench)
        install_dependencies
        configure_and_build "$here/build-release" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF
        for benchmark in "$here"/build-release/benchmarks/*Benchmark; do
            [ -x "$benchmark" ] && "$benchmark" "${@:2}"
        done
        ;;
    tsan)
        install_dependencies
        configure_and_build "$here/build-tsan" -DCMAKE_BUILD_TYPE=Debug \
            -DKEZ_TSAN=ON -DKEZ_BUILD_BENCHMARKS=OFF -DKEZ_BUILD_EXAMPLES=OFF
        ctest --test-dir "$here/build-tsan" -j "$jobs" --output-on-failure -L tsan
        ;;
    demo)
        install_dependencies
        cmake -S "$here" -B "$here/build-release" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF
        cmake --build "$here/build-release" -j "$jobs" --target kezvis
        "$here/build-release/apps/kezvis/kezvis" gallery -o "$here/out"
        ;;
    docs)
        install_dependencies
        rm -rf "$here/build-docs"
        (cd "$here" && doxygen docs/Doxyfile)
        echo "API reference: $here/build-docs/html/index.html"
        ;;
    *)
        sed -n '2,14p' "$0"
        exit 2
        ;;
esac
