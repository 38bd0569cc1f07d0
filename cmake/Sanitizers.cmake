# TARN_SANITIZE: what the whole tree is instrumented with.
if(TARN_SANITIZE STREQUAL "address")
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
elseif(TARN_SANITIZE STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(TARN_SANITIZE STREQUAL "fuzzer")
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
elseif(TARN_SANITIZE)
    message(FATAL_ERROR "TARN_SANITIZE must be address, thread, fuzzer or empty, not ${TARN_SANITIZE}")
endif()
