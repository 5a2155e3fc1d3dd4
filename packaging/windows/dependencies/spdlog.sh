# Names of log files are wide: they may hold what no code page has.
source=spdlog
needs=fmt

build() {
    cmake_build -DSPDLOG_BUILD_SHARED=OFF -DSPDLOG_FMT_EXTERNAL=ON -DSPDLOG_WCHAR_FILENAMES=ON \
        -DSPDLOG_BUILD_EXAMPLE=OFF -DSPDLOG_BUILD_TESTS=OFF
}
