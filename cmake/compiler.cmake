# Warnings and sanitizers, as one interface target that every target of the project links.
add_library(kestrel_compiler INTERFACE)
target_compile_options(kestrel_compiler INTERFACE
    $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
        -Wconversion -Wsign-conversion -Wformat=2>
    # Clang takes double{f} for an implicit promotion.
    $<$<CXX_COMPILER_ID:GNU>:-Wdouble-promotion>
    # GCC 12 takes "text" + made string for an overlapping copy where it optimises most.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>
    # Results must not depend on the machine: no fused multiply-add behind the program's back.
    $<$<CXX_COMPILER_ID:GNU,Clang>:-ffp-contract=off>
    # Wrong code: the superword vectoriser of GCC 12.2 (12.2.0 at -O2; not at -O1) takes double ->
    # float -> double of two neighbouring values, such as two coefficients, for no change at all.
    # SinglePrecision.IsNotLostWhereTwoNeighboursAreRounded fails without the switch.
    $<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)
# What makes a fault in the program hard to use for somebody else: position-independent code, tables
# that are read-only once the program runs, checks of stack frames, of the C library's buffers and of
# the standard library's indices, and jumps to marked places only.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
target_compile_options(kestrel_compiler INTERFACE $<$<CXX_COMPILER_ID:GNU,Clang>:-fstack-protector-strong>)
target_compile_definitions(kestrel_compiler INTERFACE _GLIBCXX_ASSERTIONS)
if(CMAKE_BUILD_TYPE MATCHES "Rel" AND NOT KESTREL_SANITIZE AND NOT KESTREL_FUZZ)
    # It needs an optimised build, and the sanitizers check more.
    target_compile_options(kestrel_compiler INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
set(flags -fstack-clash-protection -fcf-protection)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    list(APPEND flags -mbranch-protection=standard)
endif()
foreach(flag IN LISTS flags)
    string(MAKE_C_IDENTIFIER "KESTREL_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
        target_compile_options(kestrel_compiler INTERFACE ${flag})
    endif()
endforeach()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    target_link_options(kestrel_compiler INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

if(KESTREL_WERROR)
    target_compile_options(kestrel_compiler INTERFACE $<$<CXX_COMPILER_ID:GNU,Clang>:-Werror>)
endif()
if(KESTREL_SANITIZE)
    target_compile_options(kestrel_compiler INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kestrel_compiler INTERFACE -fsanitize=address,undefined)
endif()
if(KESTREL_SANITIZE OR KESTREL_FUZZ)
    target_compile_definitions(kestrel_compiler INTERFACE KESTREL_SANITIZED)
endif()
if(KESTREL_FUZZ)
    target_compile_options(kestrel_compiler INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kestrel_compiler INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
endif()
