# libFuzzer target of the CodeWarrior export reader and the panel
# translators (clang only). It compiles the reader's, the translators' and
# the option codec's sources itself, so that they are instrumented for
# coverage and checked by the sanitizers; TinyXML is the system's.
if(ADS_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(ads_importer_fuzz
    ${CMAKE_CURRENT_LIST_DIR}/importer_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/src/import/export_filter.cpp
    ${PROJECT_SOURCE_DIR}/src/import/panel_text.cpp
    ${PROJECT_SOURCE_DIR}/src/import/panel_readers.cpp
    ${PROJECT_SOURCE_DIR}/src/import/project_files.cpp
    ${PROJECT_SOURCE_DIR}/src/import/export_reader.cpp
    ${PROJECT_SOURCE_DIR}/src/import/panel_values.cpp
    ${PROJECT_SOURCE_DIR}/src/import/panel_translators.cpp
    ${PROJECT_SOURCE_DIR}/src/import/link_translators.cpp
    ${PROJECT_SOURCE_DIR}/src/options/option_text.cpp
    ${PROJECT_SOURCE_DIR}/src/options/option_tables.cpp
    ${PROJECT_SOURCE_DIR}/src/options/option_rows.cpp
    ${PROJECT_SOURCE_DIR}/src/options/page_state.cpp
    ${PROJECT_SOURCE_DIR}/src/options/compiler_options.cpp
    ${PROJECT_SOURCE_DIR}/src/options/assembler_options.cpp
    ${PROJECT_SOURCE_DIR}/src/options/pages.cpp)
  target_include_directories(ads_importer_fuzz PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  target_compile_options(ads_importer_fuzz PRIVATE
    -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g)
  target_link_options(ads_importer_fuzz PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_libraries(ads_importer_fuzz PRIVATE ads_config tinyxml ads_warnings)
endif()
