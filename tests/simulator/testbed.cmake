# The test bed and the programs that its tests run in it.
add_executable(beddriver beddriver.cpp)
target_link_libraries(beddriver PRIVATE hardware house_warnings)
add_executable(bedwidget bedwidget.cpp)
target_link_libraries(bedwidget PRIVATE Qt6::Widgets house_warnings)

foreach(name testbedtest testbedinputtest testbedprogramtest testbedscreentest)
    house_test(${name} SOURCES ${name}.cpp testbedrig.cpp testbedrig.h LIBRARIES simhardware LABELS simulator)
    add_dependencies(${name} beddriver bedwidget)
endforeach()
