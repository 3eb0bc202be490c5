command_demo() { fail "not there yet"; }
