# Fuzz targets of the nuclide data; needs add_fuzz_target(NAME SOURCE).
set(fuzz_image ${CMAKE_CURRENT_BINARY_DIR}/nuclide-image.db)
add_custom_command(
    OUTPUT ${fuzz_image}
    COMMAND kestrel-mdb2sql ${PROJECT_SOURCE_DIR}/tests/data/jet/nuc2k.mdb | cat > ${fuzz_image}
    DEPENDS kestrel-mdb2sql ${PROJECT_SOURCE_DIR}/tests/data/jet/nuc2k.mdb
    VERBATIM)
add_custom_target(fuzz_nuclide_image DEPENDS ${fuzz_image})

foreach(name jet list query sqlite)
    add_fuzz_target(nuclide_${name} nuclide_${name}_target.cpp)
    target_compile_definitions(fuzz_nuclide_${name} PRIVATE
        KESTREL_JET_READER="$<TARGET_FILE:kestrel-mdb2sql>"
        KESTREL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
        KESTREL_FUZZ_IMAGE="${fuzz_image}")
    target_link_libraries(fuzz_nuclide_${name} PRIVATE kestrel_jet SQLite::SQLite3)
    add_dependencies(fuzz_nuclide_${name} fuzz_nuclide_image)
endforeach()
