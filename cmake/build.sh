# Sourced by ./run, ./test and bench/compare: say, and build_preset PRESET TARGET...
# Everything goes to stderr, since stdout belongs to the program that is run afterwards.

say() { printf '%s\n' "$*" >&2; }

# quietly LOG COMMAND...: on a terminal the command shows its progress; else its output is kept in
# LOG and shown only when it fails.
quietly() {
    log=$1
    shift
    if [ -t 2 ]; then
        "$@" >&2
    elif ! "$@" >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        say "This failed: $*. All of its output is in $log."
        return 1
    fi
}

# build_preset PRESET TARGET...: configures when need be and builds what is out of date. Says so, and
# on a terminal shows ninja's progress, only when a source has changed.
build_preset() {
    preset=$1
    shift
    folder=build/$preset
    built=$folder/.built-$(printf '%s-' "$@")
    mkdir -p "$folder"
    if [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ]; then
        say "Configuring ($preset)…"
        quietly "$folder/configure.log" cmake --preset "$preset" || return 1
    fi
    if [ -f "$built" ] && [ -z "$(find CMakeLists.txt cmake TarnCore Tarn cli tests bench \
        -newer "$built" -print -quit)" ]; then
        quietly "$folder/build.log" cmake --build "$folder" --target "$@" -- --quiet || return 1
    else
        say "Building ($preset)…"
        touch "$built.begun"
        quietly "$folder/build.log" cmake --build "$folder" --target "$@" || return 1
        mv "$built.begun" "$built"
    fi
}
