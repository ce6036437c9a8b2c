# Tests against the naive model of the module: pixel rules, walks, whole games.
scroll2d_test(rules_test rules_test.cpp)
