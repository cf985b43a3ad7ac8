# METIS (nested dissection of graphs): target METIS::METIS.
include(PlainLibrary)
find_plain_library(METIS metis.h metis)
