# bt_host_library(NAME [DEPS targets...])
# A host kit library: a shared library built from every source file in the
# calling folder (so adding a class needs no edit here), headers reachable as
# <NAME/Header.h> from the host/ folder.
function(bt_host_library NAME)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB _src CONFIGURE_DEPENDS
    ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h
    ${CMAKE_CURRENT_SOURCE_DIR}/*.qrc ${CMAKE_CURRENT_SOURCE_DIR}/*.ui)
  add_library(${NAME} SHARED ${_src})
  target_include_directories(${NAME} PUBLIC ${PROJECT_SOURCE_DIR}/host)
  target_link_libraries(${NAME} PUBLIC bt_options ${ARG_DEPS})
endfunction()

# bt_add_gtest(NAME SOURCES... [LIBS ...] [ENV ...])
# A GoogleTest executable with the shared Qt-aware main, run headless by ctest.
function(bt_add_gtest NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;ENV;LABELS" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE bt_test_main ${ARG_LIBS})
  add_test(NAME ${NAME} COMMAND ${NAME})
  set_tests_properties(${NAME} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;BT_BUILD_DIR=${CMAKE_BINARY_DIR};BT_SOURCE_DIR=${PROJECT_SOURCE_DIR};${ARG_ENV}")
  if(ARG_LABELS)
    set_tests_properties(${NAME} PROPERTIES LABELS "${ARG_LABELS}")
  endif()
endfunction()
