# Faster builds where the tools are present: ccache, mold, a precompiled header per layer.
find_program(TARN_CCACHE ccache)
if(TARN_CCACHE)
    set(launcher ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${TARN_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
endif()

find_program(TARN_MOLD mold)
if(TARN_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

# tarn_precompile(TARGET HEADER...): the headers that the target's sources read over and over.
function(tarn_precompile target)
    if(TARN_PCH)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
