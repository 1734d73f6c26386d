# Sets cmpi_nsp_cache_sources, relative to substitute/cmpi.nsp.
set(cmpi_nsp_cache_sources
    cache/CacheFile.cpp
    cache/CacheTidy.cpp
    cache/Checksum.cpp
    cache/ClassRecordReader.cpp
    cache/ClassRecordWriter.cpp
    cache/CodedSyntax.cpp
    cache/CodedValue.cpp
    cache/InstalledSchema.cpp
    cache/MappedFile.cpp
    cache/SchemaDecoder.cpp
    cache/SchemaEncoder.cpp
    cache/SourceStamp.cpp
    cache/UserCacheFolder.cpp)

# A cache file holds for the build that wrote it: for the product's version and the sources that
# decide what a schema is compiled to, down to the classes and values, and how it is written.
set(cache_folders "${CMAKE_CURRENT_LIST_DIR}" "${CMAKE_CURRENT_LIST_DIR}/../repository"
                  "${PROJECT_SOURCE_DIR}/substitute/vorcore/values" "${PROJECT_SOURCE_DIR}/framework")
set(cache_sources "")
foreach(folder IN LISTS cache_folders)
  file(GLOB_RECURSE folder_sources CONFIGURE_DEPENDS "${folder}/*.cpp" "${folder}/*.h")
  list(APPEND cache_sources ${folder_sources})
endforeach()
set(cache_build "${PROJECT_VERSION}")
foreach(source IN LISTS cache_sources)
  file(SHA256 "${source}" digest)
  string(APPEND cache_build "${digest}")
endforeach()
string(SHA256 cache_build "${cache_build}")
string(SUBSTRING "${cache_build}" 0 16 cache_build)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${cache_sources})
set_source_files_properties(cache/SchemaDecoder.cpp cache/SchemaEncoder.cpp
                            PROPERTIES COMPILE_DEFINITIONS DIAGS_SCHEMA_BUILD=0x${cache_build}ULL)
