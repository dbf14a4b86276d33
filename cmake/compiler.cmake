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
    # GCC 12.2 loses the rounding of double -> float -> double where it vectorises two neighbouring
    # values, as two coefficients or two bounds of a measurement are.
    $<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)
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
