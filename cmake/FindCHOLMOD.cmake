# CHOLMOD (sparse Cholesky factors): target CHOLMOD::CHOLMOD.
include(PlainLibrary)
find_plain_library(CHOLMOD cholmod.h cholmod suitesparse)
