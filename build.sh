#!/usr/bin/env bash
# One entry point for setting up, building, testing and benchmarking KEZVisualization.
#
#   ./build.sh deps     install the Debian packages the project needs (when missing)
#   ./build.sh build    configure and build into build/
#   ./build.sh test     deps, build, the whole test suite, then the whole suite
#                       again under AddressSanitizer and UndefinedBehaviorSanitizer,
#                       then the tests labelled "threads" under ThreadSanitizer,
#                       then each fuzz target for 30 s
#   ./build.sh bench    deps, a Release build into build-release/, every benchmark
#   ./build.sh tsan     deps, a ThreadSanitizer build into build-tsan/ of the tests
#                       labelled "threads", and those tests
#   ./build.sh fuzz [SECONDS]
#                       deps, the fuzz targets with libFuzzer (clang 14) into
#                       build-fuzz/, then each target for SECONDS (default 60)
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
    clang-14 libclang-rt-14-dev
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

# The tests that run code from several threads, built and run under
# ThreadSanitizer; only the library and those tests are built.
run_thread_sanitized_tests() {
    cmake -S "$here" -B "$here/build-tsan" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
        -DKEZ_TSAN=ON -DKEZ_BUILD_BENCHMARKS=OFF -DKEZ_BUILD_EXAMPLES=OFF
    cmake --build "$here/build-tsan" -j "$jobs" --target KEZThreadTests
    ctest --test-dir "$here/build-tsan" -j "$jobs" --output-on-failure --timeout 600 -L threads
}

# The fuzz targets: a build with clang 14's libFuzzer, AddressSanitizer and
# UndefinedBehaviorSanitizer, then each target for the given seconds on its
# checked-in seeds and the inputs that failed before (tests/fuzz-regressions),
# with a timeout of 10 s per input and 2 GB of memory. New inputs collect in
# build-fuzz/corpus/, failing ones in build-fuzz/artifacts/. A summary of
# executions per second and coverage follows; any failure fails the command.
run_fuzzers() {
    local seconds="$1"
    local dir="$here/build-fuzz"
    # -O1 with line tables only: quick to build, fast enough to fuzz, and
    # stack traces still name files and lines. The apps are configured for
    # kezvis' scene library, which the .kvr reader's target links; only what
    # the targets need is built.
    cmake -S "$here" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -gline-tables-only -DNDEBUG" \
        -DCMAKE_CXX_COMPILER=clang++-14 -DKEZ_FUZZ=ON -DBUILD_TESTING=OFF \
        -DKEZ_BUILD_BENCHMARKS=OFF -DKEZ_BUILD_EXAMPLES=OFF -DKEZ_BUILD_APPS=ON
    cmake --build "$dir" -j "$jobs" --target KEZFuzzers
    mkdir -p "$dir/logs"
    # As many targets at once as there are jobs; each runs on one core.
    local names=() pids=()
    for fuzzer in "$dir"/fuzz/*Fuzzer; do
        [ -x "$fuzzer" ] || continue
        local name
        name="$(basename "$fuzzer")"
        local corpus="$dir/corpus/$name" artifacts="$dir/artifacts/$name"
        mkdir -p "$corpus" "$artifacts"
        local inputs=("$corpus" "$here/fuzz/corpus/$name")
        [ -d "$here/tests/fuzz-regressions/$name" ] && inputs+=("$here/tests/fuzz-regressions/$name")
        while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do
            sleep 1
        done
        echo "== $name: ${seconds} s"
        "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -malloc_limit_mb=2048 \
            -print_final_stats=1 -artifact_prefix="$artifacts/" "${inputs[@]}" >"$dir/logs/$name.log" 2>&1 &
        names+=("$name")
        pids+=($!)
    done
    local failed=() i
    for i in "${!pids[@]}"; do
        local name="${names[$i]}" log="$dir/logs/${names[$i]}.log"
        if ! wait "${pids[$i]}"; then
            failed+=("$name")
            echo "== $name failed:"
            tail -n 60 "$log"
        fi
    done
    for name in "${names[@]}"; do
        local log="$dir/logs/$name.log" last execs
        last="$(grep -E '^#[0-9]+' "$log" | grep 'cov:' | tail -n 1 || true)"
        execs="$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")"
        printf '%-22s %8s exec/s  %s\n' "$name" "${execs:-?}" \
            "$(echo "$last" | grep -oE 'cov: [0-9]+ ft: [0-9]+ corp: [0-9]+/[0-9a-zA-Z]+' || true)"
    done
    if [ ${#failed[@]} -gt 0 ]; then
        echo "Fuzzing failed in: ${failed[*]} (inputs in $dir/artifacts/, logs in $dir/logs/)"
        return 1
    fi
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
        run_fuzzers 30
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
    fuzz)
        install_dependencies
        run_fuzzers "${2:-60}"
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
        sed -n '2,20p' "$0"
        exit 2
        ;;
esac
