# GoogleTest: Debian's build natively; built from Debian's sources
# (/usr/src/googletest) for the mingw-w64 builds, whose test programs CTest
# runs under wine (the toolchain file names wine as the emulator).
if(CMAKE_CROSSCOMPILING)
  set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  foreach(lib gtest gtest_main gmock)
    if(NOT TARGET GTest::${lib})
      add_library(GTest::${lib} ALIAS ${lib})
    endif()
  endforeach()
else()
  find_package(GTest REQUIRED)
endif()

# One CTest entry per test program; the program's own output lists the cases.
function(ads_add_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gmock GTest::gtest_main ads_warnings)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name} --gtest_color=no)
  set_tests_properties(${name} PROPERTIES TIMEOUT 900)
endfunction()
