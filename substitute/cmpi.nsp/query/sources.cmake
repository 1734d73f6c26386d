# Sets cmpi_nsp_query_sources, relative to substitute/cmpi.nsp.
set(cmpi_nsp_query_sources
    query/Comparison.cpp
    query/DataObject.cpp
    query/Evaluation.cpp
    query/Lexer.cpp
    query/LikePattern.cpp
    query/NormalForm.cpp
    query/Parser.cpp
    query/Query.cpp)
