# Copies the data file that the build has made beside the program, unless another one stands there that somebody else put
# in its place: cmake -DMADE= -DPLACE= -P place_data_file.cmake
set(note ${MADE}.placed) # the checksum of what was copied last
if(EXISTS ${PLACE})
    file(SHA256 ${PLACE} there)
    file(SHA256 ${MADE} made)
    set(placed)
    if(EXISTS ${note})
        file(READ ${note} placed)
    endif()
    if(NOT there STREQUAL placed AND NOT there STREQUAL made)
        message("${PLACE} is not what the build made, and is left alone. Remove it to have the build's own.")
        return()
    endif()
endif()
file(SHA256 ${MADE} made)
configure_file(${MADE} ${PLACE} COPYONLY)
file(WRITE ${note} ${made})
