# tarn_test(AREA SOURCES... [LIBS lib...]): the test program of one area, found by `ctest -L AREA`.
function(tarn_test area)
    cmake_parse_arguments(arg "" "" "LIBS" ${ARGN})
    set(target tarn-tests-${area})
    add_executable(${target} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${target} PRIVATE TarnTestSupport TarnWarnings ${arg_LIBS})
    # Programs that link Qt are compiled as position-independent executables, which the shared
    # header was not.
    if(TARN_PCH AND NOT "TarnUI" IN_LIST arg_LIBS)
        target_precompile_headers(${target} REUSE_FROM TarnTestSupport)
    endif()
    set(patience 60)
    if(TARN_SANITIZE)  # everything is slower then, some of it a hundredfold
        set(patience 600)
    endif()
    gtest_discover_tests(${target} TEST_PREFIX "${area}." PROPERTIES LABELS ${area} TIMEOUT ${patience}
        DISCOVERY_TIMEOUT ${patience})
endfunction()
