# What Windows reads in a program: icon, version and manifest. The manifest makes UTF-8 the code page of all narrow texts.
set(SIZING_RESOURCE_DIR ${CMAKE_CURRENT_LIST_DIR})
function(add_resources target description)
    configure_file(${SIZING_RESOURCE_DIR}/program.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()
