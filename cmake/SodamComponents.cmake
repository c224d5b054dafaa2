# Helpers that turn each source folder into a library and each test folder
# into one test program, so a new file needs no edit of the build.

set(SODAM_COMPONENTS "")

function(sodam_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()

# sodam_component(name DEPS lib...): src/<name>/*.cpp as library sodam_<name>.
function(sodam_component name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${name}/*.cpp)
  add_library(sodam_${name} STATIC ${sources})
  target_include_directories(sodam_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(sodam_${name} PUBLIC ${ARG_DEPS})
  sodam_warnings(sodam_${name})
  set(SODAM_COMPONENTS ${SODAM_COMPONENTS} sodam_${name} PARENT_SCOPE)
endfunction()

# tests/<name>/*.cpp as program sodam_tests_<name>, registered with CTest.
function(sodam_test_folder name lib)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(sodam_tests_${name} ${sources})
  target_include_directories(sodam_tests_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(sodam_tests_${name} PRIVATE ${lib} GTest::gtest GTest::gtest_main GTest::gmock)
  sodam_warnings(sodam_tests_${name})
  gtest_discover_tests(sodam_tests_${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60)
endfunction()

macro(sodam_component_tests)
  foreach(lib ${SODAM_COMPONENTS})
    string(REPLACE "sodam_" "" name ${lib})
    sodam_test_folder(${name} ${lib})
  endforeach()
endmacro()
