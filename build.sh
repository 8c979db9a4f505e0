#!/usr/bin/env bash
# Sets up, builds and runs tov.
#   ./build.sh main    build everything and run the main example
#   ./build.sh test    build everything and run the whole test suite
#   ./build.sh build   build only
#   ./build.sh tsan    build the library and tests with ThreadSanitizer in build-tsan
#                      and run the tests labelled "threads" (CI runs it after test)
set -euo pipefail
cd "$(dirname "$0")"

install_packages() {
    local missing=()
    while read -r package; do
        [ -z "$package" ] && continue
        dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
    done < .ci/packages
    if [ ${#missing[@]} -gt 0 ]; then
        apt-get update
        DEBIAN_FRONTEND=noninteractive apt-get install -y "${missing[@]}"
    fi
}

build() {
    export CCACHE_BASEDIR="$PWD"
    cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
    cmake --build build -j"$(nproc)"
}

# Only what the tests need: the library, the tests, their plug-in and tov-state.
build_tsan() {
    export CCACHE_BASEDIR="$PWD"
    cmake -S . -B build-tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTOV_SANITIZE=thread \
          -DTOV_BUILD_EXAMPLES=OFF -DTOV_BUILD_BENCHMARKS=OFF -DTOV_BUILD_FUZZERS=OFF
    cmake --build build-tsan -j"$(nproc)"
}

# An editor process and a viewer process on loopback: the viewer finds the editor by its "Alife"
# packets and mirrors its scene while it is edited, then both print their copy, which must be
# the same text.
run_mirroring_example() {
    echo "== MirroringExample: an editor process edits a scene, a viewer process finds it and mirrors it"
    local scratch port editor
    scratch=$(mktemp -d)
    port=$(( 20000 + RANDOM % 20000 ))
    HOME="$scratch" ./build/Examples/MirroringExample editor "$port" 60 --announce $(( port + 1 )) > "$scratch/editor.out" 2>/dev/null &
    editor=$!
    HOME="$scratch" ./build/Examples/MirroringExample viewer --discover $(( port + 1 )) 2>/dev/null > "$scratch/viewer.out"
    wait "$editor"
    grep -v "^[' {}]" "$scratch/editor.out" | grep -v "text hash"
    grep -v "^[' {}]" "$scratch/viewer.out"
    grep "text hash" "$scratch/editor.out"
    if diff <(sed -n '/text hash/,$p' "$scratch/editor.out" | tail -n +2) <(sed -n '/text hash/,$p' "$scratch/viewer.out" | tail -n +2) > /dev/null; then
        echo "the viewer's copy saves to the same text as the editor's scene:"
        sed -n '/text hash/,$p' "$scratch/viewer.out" | tail -n +2
    else
        echo "the viewer's copy differs from the editor's scene" >&2
        rm -rf "$scratch"
        return 1
    fi
    rm -rf "$scratch"
}

# The main job: the object model, object space and program examples (the last in a scratch
# home folder), then tov-state on the shipped documents.
run_main() {
    local tool=./build/Tools/tov-state documents=Examples/Documents
    ./build/Examples/ObjectModelExample
    echo "== ObjectSpaceExample"
    ./build/Examples/ObjectSpaceExample
    echo "== ProgramExample, twice, with HOME and ProgramData in a scratch folder"
    local scratch
    scratch=$(mktemp -d)
    HOME="$scratch/home" ProgramData="$scratch/data" ./build/Examples/ProgramExample
    HOME="$scratch/home" ProgramData="$scratch/data" ./build/Examples/ProgramExample
    cat "$scratch/home/.config/ProgramExample/configurations/Settings_1_0_0.configuration"
    rm -rf "$scratch"
    run_mirroring_example
    echo "== StudioExample: a scripted session of an editor process and the viewer process it starts, traced"
    scratch=$(mktemp -d)
    HOME="$scratch" ./build/Examples/Studio/StudioExample session --profiler=Unreal --profilerMode=file 2>/dev/null
    echo "== tov-trace summary of the session's trace (the editor's scopes)"
    ./build/Tools/tov-trace summary "$scratch"/.config/StudioExample/traces/*.utrace | grep -E '^(scopes |  "(EditAndUndo|RenderFrame|SaveAndReload|UpdateOutputMirrorer Scene)")'
    rm -rf "$scratch"
    echo "== tov-state check $documents/*"
    "$tool" check "$documents"/*.txt "$documents"/*.configuration && echo "all documents parse"
    echo "== tov-state format $documents/scene.txt"
    "$tool" format "$documents/scene.txt"
    echo "== tov-state short --depth 2 $documents/settings.configuration"
    "$tool" short --depth 2 "$documents/settings.configuration"
    echo "== tov-state to-binary, then from-binary, of $documents/samples.txt (with its .bin sibling)"
    "$tool" to-binary "$documents/samples.txt" - | "$tool" from-binary - -
}

command=${1:-main}
case "$command" in
    main|test|build|tsan) ;;
    *) echo "usage: $0 [main|test|build|tsan]" >&2; exit 2 ;;
esac
install_packages
case "$command" in
    main)  build; run_main ;;
    test)  build; ctest --test-dir build --output-on-failure -j"$(nproc)" ;;
    build) build ;;
    tsan)  build_tsan; ctest --test-dir build-tsan -L threads --output-on-failure -j"$(nproc)" ;;
esac
