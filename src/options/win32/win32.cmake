# The settings dialog's windows (Windows only): the dialog layer, the page
# views and the dialog itself, over the windowless page models.
add_library(ads_options_win32 STATIC
  ${CMAKE_CURRENT_LIST_DIR}/page_layout.cpp
  ${CMAKE_CURRENT_LIST_DIR}/dialog_window.cpp
  ${CMAKE_CURRENT_LIST_DIR}/page_view.cpp
  ${CMAKE_CURRENT_LIST_DIR}/settings_window.cpp)
target_link_libraries(ads_options_win32 PUBLIC ads_options PRIVATE ads_warnings comctl32 comdlg32 gdi32 user32 shell32)
