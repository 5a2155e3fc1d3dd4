# Qt's ground: Core, Gui, Widgets, Test and the platform plug-ins, with what the component uses and no more. Its
# libraries and its namespace have names of their own: a host may have brought a Qt of another version.
source=qt6-base
# The tool bar stays, which Qt's own list of earlier functions names, and XPM, without which there is no drag and drop.
features_off="
    sql network xml dbus concurrent printsupport
    opengl opengl_dynamic vulkan direct2d direct2d1_1 tuiotouch
    glib icu zstd pkg_config etw cpp_winrt mimetype_database
    islamiccivilcalendar jalalicalendar hijricalendar
    sharedmemory systemsemaphore
    gif ico jpeg imageformat_ppm imageformat_xbm movie picture pdf
    systemtrayicon sessionmanager desktopservices undocommand
    textmarkdownreader textmarkdownwriter textodfwriter
    colordialog fontdialog fontcombobox wizard inputdialog errormessage progressdialog
    splashscreen lcdnumber dial mdiarea dockwidget statusbar toolbox commandlinkbutton
    keysequenceedit datawidgetmapper columnview undoview syntaxhighlighter
    graphicsview graphicseffect style_windowsvista
    valgrind testlib_selfcover"
bundled="zlib png jpeg freetype harfbuzz pcre2 doubleconversion libb2 textmarkdownreader"

build() {
    local options=() name plugin=$work/source/src/plugins/platforms/windows
    # Debian's archive leaves out the header of pens' drivers, which is not free: the plug-in goes without it. And its
    # fonts by DirectWrite stand in a source that is built with Direct2D alone.
    sed -i 's/QT_CONFIG(tabletevent)/0/; s/QT_CONFIG(directwrite3)/0/' "$plugin"/*.cpp "$plugin"/*.h
    sed -i 's/CONDITION QT_FEATURE_tabletevent/CONDITION FALSE/' "$plugin/CMakeLists.txt"
    for name in $features_off; do options+=("-DFEATURE_$name=OFF"); done
    for name in $bundled; do options+=("-DFEATURE_system_$name=OFF"); done
    cmake_build -DBUILD_SHARED_LIBS=ON -DQT_LIBINFIX=Zul -DQT_NAMESPACE=ZulQt -DINPUT_opengl=no \
        -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_QMAKE_TARGET_MKSPEC=win32-g++ \
        "${options[@]}"
}
