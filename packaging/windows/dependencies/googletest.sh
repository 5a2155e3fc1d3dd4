source=googletest

build() {
    cmake_build -DBUILD_SHARED_LIBS=OFF
}
