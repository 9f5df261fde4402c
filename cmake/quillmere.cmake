# Helpers that every subsystem's CMakeLists uses.

# qm_unit_test(<name> SOURCES ... LIBS ...)
# A core test: built natively and cross-built; under Wine each test case is
# discovered before the run (discovery during the build would need Wine).
function(qm_unit_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE qm_common ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
                       PROPERTIES LABELS unit TIMEOUT 120)
endfunction()

# qm_win32_test(<name> SOURCES ... LIBS ... [TIMEOUT s])
# A shell test under Wine: real windows on the display. Registered as one
# test, since its cases share the display and must not run side by side.
function(qm_win32_test name)
  if(NOT WIN32)
    return()
  endif()
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 600)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE qm_common ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  set_tests_properties(${name} PROPERTIES LABELS win32 RESOURCE_LOCK display TIMEOUT ${ARG_TIMEOUT})
endfunction()
