# The target's processor, by Debian's cross compiler and with the armhf packages of what the house links with. Qt's tools
# that run while building (moc, rcc) are the machine's own, and where the armhf packages look for them too.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

# Nothing of the machine's own may be found in the target's place.
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:/usr/share/pkgconfig)
