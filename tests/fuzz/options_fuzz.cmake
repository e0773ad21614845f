# libFuzzer target of the option codec (clang only). It compiles the codec's
# sources itself, so that they are instrumented for coverage and checked by
# the sanitizers.
if(ADS_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(ads_options_fuzz
    ${CMAKE_CURRENT_LIST_DIR}/options_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/src/options/option_text.cpp
    ${PROJECT_SOURCE_DIR}/src/options/option_tables.cpp
    ${PROJECT_SOURCE_DIR}/src/options/option_rows.cpp
    ${PROJECT_SOURCE_DIR}/src/options/page_state.cpp
    ${PROJECT_SOURCE_DIR}/src/options/compiler_options.cpp
    ${PROJECT_SOURCE_DIR}/src/options/assembler_options.cpp
    ${PROJECT_SOURCE_DIR}/src/options/pages.cpp)
  target_include_directories(ads_options_fuzz PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  target_compile_options(ads_options_fuzz PRIVATE
    -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g)
  target_link_options(ads_options_fuzz PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_libraries(ads_options_fuzz PRIVATE ads_config ads_warnings)
endif()
