set(measured be_kit be_server)
