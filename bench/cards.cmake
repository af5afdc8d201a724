# Event-card programs: the picture-path benchmark and the card gallery (a
# rendering tool for looking at the cards; not run by ctest).
add_executable(card_pictures ${CMAKE_CURRENT_LIST_DIR}/card_pictures.cpp $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(card_pictures PRIVATE BodyTemperatureCore)
# The bench programs share the tests' picture encoders.
target_include_directories(card_pictures PRIVATE ${PROJECT_SOURCE_DIR}/tests)

add_executable(card_gallery ${CMAKE_CURRENT_LIST_DIR}/card_gallery.cpp
  $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(card_gallery PRIVATE BodyTemperatureCore)
target_include_directories(card_gallery PRIVATE ${PROJECT_SOURCE_DIR}/tests)
