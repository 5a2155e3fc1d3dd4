source=fmtlib

build() {
    cmake_build -DBUILD_SHARED_LIBS=OFF -DFMT_TEST=OFF -DFMT_DOC=OFF
}
