# Installs the build in BUILD_DIR into ROOT, moves the tree, and follows the desktop entry to the program and its data.
file(REMOVE_RECURSE ${ROOT} ${ROOT}-moved)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${ROOT} COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${ROOT} ${ROOT}-moved)
set(ROOT ${ROOT}-moved)

file(STRINGS ${ROOT}/share/applications/blanketing-valve-sizing.desktop entry REGEX "^(Exec|Icon)=")
string(REGEX MATCH "Exec=([^;]+)" found "${entry}")
file(REAL_PATH ${ROOT}/bin/${CMAKE_MATCH_1} program)
get_filename_component(directory ${program} DIRECTORY)
string(REGEX MATCH "Icon=([^;]+)" found "${entry}")
set(icons ${ROOT}/share/icons/hicolor)

foreach(file ${program} ${directory}/print_queue ${directory}/capacities.mdb ${icons}/scalable/apps/${CMAKE_MATCH_1}.svg
             ${icons}/48x48/apps/${CMAKE_MATCH_1}.png ${icons}/128x128/apps/${CMAKE_MATCH_1}.png)
    if(NOT EXISTS ${file} OR IS_SYMLINK ${file} OR IS_DIRECTORY ${file})
        message(SEND_ERROR "not installed: ${file}")
    endif()
endforeach()

# Every link of the documents leads somewhere.
file(GLOB_RECURSE pages ${ROOT}/share/blanketing-valve-sizing/*.html)
list(LENGTH pages count)
if(NOT count EQUAL 2 OR NOT EXISTS ${directory}/user_guide.html)
    message(SEND_ERROR "not the two pages, or not beside the program: ${pages}")
endif()
foreach(page ${pages})
    file(READ ${page} text)
    string(REGEX MATCHALL "(href|src)=\"[^\"#]*" links "${text}")
    get_filename_component(from ${page} DIRECTORY)
    foreach(link ${links})
        string(REGEX REPLACE "^[a-z]+=\"" "" link "${link}")
        if(NOT EXISTS ${from}/${link})
            message(SEND_ERROR "${page} links to ${link}")
        endif()
    endforeach()
endforeach()

# The list program finds the data file and the verification list through its link.
execute_process(COMMAND ${ROOT}/bin/size_valves --verify RESULT_VARIABLE status OUTPUT_VARIABLE report)
if(NOT status EQUAL 0)
    message(SEND_ERROR "size_valves --verify: exit status ${status}: ${report}")
endif()
execute_process(COMMAND ${ROOT}/bin/size_valves --quiet -o ${ROOT}/sized.csv ${ROOT}/share/blanketing-valve-sizing/examples/tanks.csv
                RESULT_VARIABLE status ERROR_VARIABLE errors)
if(NOT status MATCHES "^[01]$" OR errors) # on the shipped tables, one tank of the example is refused
    message(SEND_ERROR "size_valves: exit status ${status}: ${errors}")
endif()
