# What the kit hides is tested beside what it shows: its own objects stand in for libbe.so.
set(tested)
set(hidden_libraries be_kit be_server)
