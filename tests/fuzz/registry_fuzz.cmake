# libFuzzer target of the registry kept in a .reg file (clang only). It
# compiles the file backend itself, so that it is instrumented for coverage
# and checked by the sanitizers.
if(ADS_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(ads_registry_fuzz
    ${CMAKE_CURRENT_LIST_DIR}/registry_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/src/platform/registry_file.cpp)
  target_include_directories(ads_registry_fuzz PRIVATE
    ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/tests)
  target_compile_options(ads_registry_fuzz PRIVATE
    -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g)
  target_link_options(ads_registry_fuzz PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_libraries(ads_registry_fuzz PRIVATE ads_warnings)
endif()
