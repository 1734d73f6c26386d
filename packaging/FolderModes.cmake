# CPack runs this on what it is about to pack. A folder that was made on the way to a file has the mode
# that the umask of whoever makes the package left: closed to users, perhaps, or open to others, and then
# no provider below it would be loaded. All may read a package's folders, root alone may write them.
file(CHMOD_RECURSE "${CPACK_TEMPORARY_DIRECTORY}"
     DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                           WORLD_EXECUTE)
