#!/usr/bin/env bash
# One entry point for setting up, building, testing and benchmarking KEZVisualization.
#
#   ./build.sh deps     install the Debian packages the project needs (when missing)
#   ./build.sh build    configure and build into build/
#   ./build.sh test     deps, build, the whole test suite, then the whole suite
#                       again under AddressSanitizer and UndefinedBehaviorSanitizer,
#                       then the tests labelled "threads" under ThreadSanitizer
#   ./build.sh bench    deps, a Release build into build-release/, every benchmark
#   ./build.sh tsan     deps, a ThreadSanitizer build into build-tsan/ of the tests
#                       labelled "threads", and those tests
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
jobs="${KEZ_JOBS:-$(nproc)}"

packages=(
    build-essential cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev libgl-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    libcgal-dev
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

# The tests that run code from several threads, built and run under
# ThreadSanitizer; only the library and those tests are built.
run_thread_sanitized_tests() {
    cmake -S "$here" -B "$here/build-tsan" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
        -DKEZ_TSAN=ON -DKEZ_BUILD_BENCHMARKS=OFF -DKEZ_BUILD_EXAMPLES=OFF
    cmake --build "$here/build-tsan" -j "$jobs" --target KEZThreadTests
    ctest --test-dir "$here/build-tsan" -j "$jobs" --output-on-failure --timeout 600 -L threads
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
        run_thread_sanitized_tests
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
        run_thread_sanitized_tests
        ;;
    *)
        sed -n '2,10p' "$0"
        exit 2
        ;;
esac
