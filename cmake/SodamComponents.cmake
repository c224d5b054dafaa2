# Helpers that gather each source folder into the core library and each test
# folder into one test program, so a new file needs no edit of the build.

function(sodam_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()

# sodam_core_library(folder...): every src/<folder>/*.cpp in one library.
function(sodam_core_library)
  set(sources "")
  foreach(folder ${ARGN})
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  add_library(sodam_core STATIC ${sources})
  target_include_directories(sodam_core PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(sodam_core PUBLIC nlohmann_json::nlohmann_json)
  sodam_warnings(sodam_core)
endfunction()

# tests/<folder>/*.cpp as program sodam_tests_<folder>, registered with CTest.
function(sodam_test_folder folder lib)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(sodam_tests_${folder} ${sources})
  target_include_directories(sodam_tests_${folder} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(sodam_tests_${folder} PRIVATE ${lib} GTest::gtest GTest::gtest_main
                                                      GTest::gmock)
  sodam_warnings(sodam_tests_${folder})
  gtest_discover_tests(sodam_tests_${folder} TEST_PREFIX "${folder}." DISCOVERY_TIMEOUT 60)
endfunction()
