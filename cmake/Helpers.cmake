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
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;BT_BUILD_DIR=${CMAKE_BINARY_DIR};BT_SOURCE_DIR=${PROJECT_SOURCE_DIR};LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp;UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp:second_deadlock_stack=1;${ARG_ENV}")
  if(ARG_LABELS)
    set_tests_properties(${NAME} PROPERTIES LABELS "${ARG_LABELS}")
  endif()
endfunction()

# bt_compile_translations(OUT_CPP NAME PREFIX TS_FILES...)
# Runs lrelease on the .ts files and compiles the .qm files into a resource
# (under PREFIX) with rcc, as explicit build steps: AUTORCC would read the
# resource file before the .qm files exist on a fresh build.
function(bt_compile_translations OUT_CPP NAME PREFIX)
  set(_ts ${ARGN})
  set(_qm_dir ${CMAKE_CURRENT_BINARY_DIR}/i18n)
  set_source_files_properties(${_ts} PROPERTIES OUTPUT_LOCATION ${_qm_dir})
  qt5_add_translation(_qm ${_ts})
  set(_qrc "<RCC><qresource prefix=\"${PREFIX}\">")
  foreach(_f ${_qm})
    get_filename_component(_n ${_f} NAME)
    string(APPEND _qrc "<file alias=\"${_n}\">${_f}</file>")
  endforeach()
  string(APPEND _qrc "</qresource></RCC>")
  set(_qrc_file ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.qrc)
  file(GENERATE OUTPUT ${_qrc_file} CONTENT "${_qrc}")
  set(_cpp ${CMAKE_CURRENT_BINARY_DIR}/qrc_${NAME}.cpp)
  add_custom_command(OUTPUT ${_cpp}
    COMMAND Qt5::rcc --name ${NAME} --output ${_cpp} ${_qrc_file}
    DEPENDS ${_qm} ${_qrc_file}
    COMMENT "Compiling translations ${NAME}")
  set_source_files_properties(${_cpp} PROPERTIES GENERATED ON SKIP_AUTOGEN ON)
  set(${OUT_CPP} ${_cpp} PARENT_SCOPE)
endfunction()
