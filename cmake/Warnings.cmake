# Warnings for our own code only; they are errors in the asan, tsan and lint presets and in CI.
add_library(TarnWarnings INTERFACE)
target_compile_options(TarnWarnings INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
    $<$<BOOL:${TARN_WERROR}>:-Werror>)
