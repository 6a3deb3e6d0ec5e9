# Before the files become a Debian package: the data file goes to where dpkg asks before it replaces or removes it, and a
# link stands where the program looks for it.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(GLOB_RECURSE dataFile ${root}/usr/lib/*/capacities.mdb)
get_filename_component(programDir ${dataFile} DIRECTORY)
set(configuration /etc/blanketing-valve-sizing)
file(MAKE_DIRECTORY ${root}${configuration})
file(RENAME ${dataFile} ${root}${configuration}/capacities.mdb)
file(CREATE_LINK ${configuration}/capacities.mdb ${programDir}/capacities.mdb SYMBOLIC)

file(GLOB manualPages ${root}/usr/share/man/man1/*.1)
execute_process(COMMAND gzip -9n ${manualPages} COMMAND_ERROR_IS_FATAL ANY)

# Whatever the umask of who makes the package.
file(GLOB_RECURSE all LIST_DIRECTORIES true ${root}/*)
foreach(path ${all})
    if(IS_DIRECTORY ${path} AND NOT IS_SYMLINK ${path})
        file(CHMOD ${path} DIRECTORY_PERMISSIONS
             OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    endif()
endforeach()
