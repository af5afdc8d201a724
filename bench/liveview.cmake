# play_windows: CPU per play window against ffmpeg decoding the same stream,
# and nine windows playing at once (GUI repaint rate).
if(TARGET playwindow)
  add_executable(play_windows ${CMAKE_CURRENT_LIST_DIR}/play_windows.cpp)
  target_link_libraries(play_windows PRIVATE bt_options playwindow Qt5::Widgets)
endif()
