house_test(testbedtest SOURCES testbedtest.cpp LIBRARIES simhardware LABELS simulator)
