# Alarm intake throughput: emulator -> commlayer -> AlarmTransfer signal.
add_executable(bench_alarm_intake ${CMAKE_CURRENT_LIST_DIR}/alarm_intake.cpp)
target_link_libraries(bench_alarm_intake PRIVATE bt_options Qt5::Core Qt5::Gui Base clientcommonlogical
  publicdatacontroller commlayer)
if(TARGET devicesim)
  add_dependencies(bench_alarm_intake devicesim)
endif()
target_compile_definitions(bench_alarm_intake PRIVATE BT_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
target_include_directories(bench_alarm_intake PRIVATE ${PROJECT_SOURCE_DIR}/tests)
