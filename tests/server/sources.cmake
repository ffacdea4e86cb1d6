# The kits' own objects in place of libbe.so, which hides the display.
set(tested)
set(hidden_sources $<TARGET_OBJECTS:be>)
set(hidden_libraries be_host)
