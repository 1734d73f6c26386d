# Sets cmpi_nsp_model_sources, relative to substitute/cmpi.nsp.
set(cmpi_nsp_model_sources
    model/ClassShape.cpp
    model/InstanceData.cpp
    model/ObjectPath.cpp
    model/PathParser.cpp
    model/PathReference.cpp)
