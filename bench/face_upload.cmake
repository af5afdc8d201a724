# The add-to-library dialog against the emulator: renders the dialog in both
# languages and measures confirm-to-result time and GUI stalls of uploads.
add_executable(face_upload ${CMAKE_CURRENT_LIST_DIR}/face_upload.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/TestSupport.cpp $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(face_upload PRIVATE BodyTemperatureCore GTest::gtest)
target_include_directories(face_upload PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(face_upload PRIVATE
  BT_BUILD_DIR="${CMAKE_BINARY_DIR}" BT_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
if(TARGET devicesim)
  add_dependencies(face_upload devicesim)
endif()
