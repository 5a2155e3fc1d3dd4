# What play.sh does on Linux: windows in memory, the home in the folder of the play.

# The component keeps its log and its layout file beside its library, and its settings in the user's home.
place() {
    ln -s "$component" "$folder/libZul_MessageBuilder.so"
    component=$folder/libZul_MessageBuilder.so
    export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data XDG_CACHE_HOME=$folder/cache
    unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
}

# zulhost with its arguments.
run() { "$host" "$@"; }

# A path in the form that the scenario writes it in.
native() { printf '%s' "$1"; }

# Output in the form in which it is expected.
plain() { cat; }
