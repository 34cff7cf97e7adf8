# The board tests read the hand-written sample board.
target_compile_definitions(test_model PRIVATE KPCB_SAMPLES_DIR="${PROJECT_SOURCE_DIR}/samples")
