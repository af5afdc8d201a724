# rtsp_windows: RTSP play windows (H.264 and H.265, sub and main streams)
# against ffmpeg decoding the same streams from the emulator's RTSP server.
if(TARGET playwindow AND TARGET devicesim)
  add_executable(rtsp_windows ${CMAKE_CURRENT_LIST_DIR}/rtsp_windows.cpp)
  target_link_libraries(rtsp_windows PRIVATE bt_options playwindow aiguitoolkit UiDataController clientcommonlogical
    Qt5::Widgets)
  add_dependencies(rtsp_windows devicesim)
endif()
