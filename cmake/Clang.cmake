# Toolchain of the fuzz preset: the newest clang that understands the library of Debian's g++.
# clang 14, Debian 12's default, does not parse the views of <ranges>.
find_program(TARN_CLANG NAMES clang-19 clang-18 clang-17 clang-16 clang REQUIRED)
find_program(TARN_CLANGXX NAMES clang++-19 clang++-18 clang++-17 clang++-16 clang++ REQUIRED)
set(CMAKE_C_COMPILER ${TARN_CLANG})
set(CMAKE_CXX_COMPILER ${TARN_CLANGXX})
