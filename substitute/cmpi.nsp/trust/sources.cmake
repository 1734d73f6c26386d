# Whether a provider's library, and what it needs, may be loaded.
set(cmpi_nsp_trust_sources
    trust/Bytes.cpp
    trust/ElfFile.cpp
    trust/LibraryTrust.cpp
    trust/LoaderCache.cpp
    trust/PeFile.cpp
    trust/RunPath.cpp)
if(WIN32)
  list(APPEND cmpi_nsp_trust_sources trust/LibraryNeedsWindows.cpp)
else()
  list(APPEND cmpi_nsp_trust_sources trust/ElfNeeds.cpp trust/LibraryNeedsPosix.cpp
       trust/LoaderViewPosix.cpp)
endif()
