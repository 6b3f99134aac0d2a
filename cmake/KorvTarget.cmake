# Our own code, generated moc/uic/rcc sources included, builds without warnings (errors unless
# KORV_WERROR is off). Connections that would narrow an argument do not compile.
function(korv_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow)
  if(KORV_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
endfunction()

# Adds every CMakeLists.txt-bearing subfolder of the current folder, so that each
# area owns its own list and nobody edits a shared one to add a folder.
function(korv_add_subfolders)
  file(GLOB children LIST_DIRECTORIES true RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*)
  list(SORT children)
  foreach(child ${children})
    if(IS_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/${child} AND EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${child}/CMakeLists.txt)
      add_subdirectory(${child})
    endif()
  endforeach()
endfunction()

# korv_add_test(NAME name LABEL unit|integration|gui SOURCES ... LIBS ... [TIMEOUT s]
#               [RESOURCE_LOCK name])
# One Qt Test executable per class or feature. gui and unit tests run offscreen. Tests that
# measure time take the "timing" lock, so that CTest never runs two of them side by side.
function(korv_add_test)
  cmake_parse_arguments(T "" "NAME;LABEL;TIMEOUT;RESOURCE_LOCK" "SOURCES;LIBS" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  korv_target_defaults(${T_NAME})
  target_link_libraries(${T_NAME} PRIVATE Qt6::Test ${T_LIBS})
  target_include_directories(${T_NAME} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
  set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${T_NAME} COMMAND ${T_NAME})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  set(environment QT_QPA_PLATFORM=offscreen KORV_SOURCE_DIR=${PROJECT_SOURCE_DIR} KORV_BINARY_DIR=${CMAKE_BINARY_DIR}
                  ${KORV_SANITIZER_ENVIRONMENT})
  set_tests_properties(${T_NAME} PROPERTIES LABELS ${T_LABEL} TIMEOUT ${T_TIMEOUT} ENVIRONMENT "${environment}")
  if(T_RESOURCE_LOCK)
    set_tests_properties(${T_NAME} PROPERTIES RESOURCE_LOCK ${T_RESOURCE_LOCK})
  endif()
endfunction()
