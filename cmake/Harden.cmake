# What the release preset adds against faults that slip through: canaries on the stack, checked
# string functions, and tables that are read-only once the program runs. Position-independent
# programs are what Debian's compilers make anyway.
if(TARN_HARDEN)
    add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
        -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
        add_compile_options(-fcf-protection)
    endif()
    add_link_options(-Wl,-z,relro,-z,now)
endif()
