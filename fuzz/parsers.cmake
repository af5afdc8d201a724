# Fuzz target of the device document readers and the alarm stream reader.
# With clang: a libFuzzer binary. With g++: a replay driver that runs every
# file of the given folders (default: the checked-in corpus) once.
add_executable(fuzz_parsers ${CMAKE_CURRENT_LIST_DIR}/parsers.cpp)
target_link_libraries(fuzz_parsers PRIVATE bt_options CapabilitySet commlayer clientcommonlogical Qt5::Core)
target_compile_definitions(fuzz_parsers PRIVATE BT_FUZZ_CORPUS="${CMAKE_CURRENT_LIST_DIR}/corpus/parsers")
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_definitions(fuzz_parsers PRIVATE BT_LIBFUZZER=1)
  target_compile_options(fuzz_parsers PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_options(fuzz_parsers PRIVATE -fsanitize=fuzzer,address,undefined)
endif()
