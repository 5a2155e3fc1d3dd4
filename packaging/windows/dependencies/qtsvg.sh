# The library that draws the icons.
source=qt6-svg
needs=qtbase

build() {
    cmake_build -DBUILD_SHARED_LIBS=ON -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DCMAKE_CXX_FLAGS=-fpch-preprocess
}
