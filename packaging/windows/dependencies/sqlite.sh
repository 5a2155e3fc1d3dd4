# With the options of Debian's own library that the reference host relies on.
source=sqlite3

build() {
    # The one-file source is made by tools of this machine.
    (mkdir -p "$work/build" && cd "$work/build" && "$work/source/configure" --disable-tcl >&2 && make sqlite3.c >&2)
    local compiler=$arch-w64-mingw32
    $launcher "$compiler-gcc-posix" -O2 -fno-strict-aliasing -DSQLITE_THREADSAFE=1 -DSQLITE_ENABLE_COLUMN_METADATA \
        -DSQLITE_ENABLE_MATH_FUNCTIONS -DSQLITE_USE_URI=1 -DSQLITE_MAX_VARIABLE_NUMBER=250000 \
        -c "$work/build/sqlite3.c" -o "$work/build/sqlite3.o"
    mkdir -p "$prefix/lib" "$prefix/include"
    "$compiler-ar" rcs "$prefix/lib/libsqlite3.a" "$work/build/sqlite3.o"
    cp "$work/build/sqlite3.h" "$prefix/include/"
}
