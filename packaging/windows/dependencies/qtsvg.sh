# The library that draws the icons. Where its source cannot be had, the part of it that they need stands in.
source=qt6-svg
needs=qtbase
stand_in=svg

build() {
    cmake_build -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF
}
