# What play.sh does for Windows: zulhost.exe under Wine, in the prefix and on the display of test-windows.sh.
export WINEDEBUG=${WINEDEBUG:--all}
wine=${ZUL_WINE:-/usr/lib/wine/wine64}
. "$here/../wine-path.sh"

# The component keeps its log and its layout file beside its library, and its settings in the user's registry.
place() {
    cp "$component" "$folder/Zul_MessageBuilder.dll"
    component=$(native "$folder/Zul_MessageBuilder.dll")
    WINEPATH=$(native "$(dirname "$host")")
    export WINEPATH
    "$wine" reg delete 'HKCU\Software\TESK' /f >/dev/null 2>&1
}

run() { "$wine" "$host" "$@"; }

# Lines end as on Linux, and the folder has its name of there. What Qt says of functions that Wine has not is no
# output of ours.
plain() {
    tr -d '\r' | perl -pe '
        BEGIN { ($native, $linux) = splice @ARGV, 0, 2; ($quoted = $native) =~ s/\\/\\\\/g; }
        $_ = "" if /^error (qt\.qpa\.|EnableNonClientDpiScaling\(\)|QPixmap::fromWinHICON\(\))/;
        s/\Q$quoted\E|\Q$native\E|Z:\Q$linux\E/$linux/g' "$(native "$folder")" "$folder"
}

# Separators of paths below the folder, and of a started program's, count as one and the same, in what came and in what
# is expected.
alike() { perl -pe 's{^(started ")([^"]*)}{my ($begin, $path) = ($1, $2); $path =~ s/[\\\/]+/\//g; "$begin$path"}e; s{\@((?:[\\/]+[^\\/"| ]+)+)}{my $path = $1; $path =~ s/[\\\/]+/\//g; "\@$path"}ge'; }
