# The importer, and libarchive to pack the hand-written job as an archive.
target_link_libraries(test_odb PRIVATE kpcb_odb PkgConfig::KPCB_LIBARCHIVE)
