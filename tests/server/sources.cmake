# The kits' own objects in place of libbe.so, which hides the display.
set(tested)
set(hidden_libraries be_kit be_server)
