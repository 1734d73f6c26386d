# Sets cmpi_nsp_cache_sources, relative to substitute/cmpi.nsp.
set(cmpi_nsp_cache_sources
    cache/CacheFile.cpp
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
# decide what a schema is compiled to, and how it is written.
file(GLOB cache_sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/*.cpp"
     "${CMAKE_CURRENT_LIST_DIR}/*.h" "${CMAKE_CURRENT_LIST_DIR}/../repository/*.cpp"
     "${CMAKE_CURRENT_LIST_DIR}/../repository/*.h")
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
