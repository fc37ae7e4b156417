# Run by cpack between installing and packing. Folders that an install makes on the way have the builder's umask taken
# off, whatever permissions are asked for: with a umask of 077 nobody but root could run what the package holds.
file(CHMOD_RECURSE ${CPACK_TEMPORARY_DIRECTORY} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
                                                                      GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
