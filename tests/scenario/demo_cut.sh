#!/usr/bin/env bash
# demo_cut.sh ZULHOST STANDIN: a demo database whose making breaks off on the server is reported, and leaves nothing.
set -u
here=$(cd "$(dirname "$0")" && pwd)
host=$1 program=$2 engine=standin
folder=$(mktemp -d)
scenario=/dev/null
. "$here/server.sh"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data

failed=0
for place in "INSERT INTO tabClienti" "CREATE INDEX IX_tabVendite_IdCliente" "COMMIT TRANSACTION"; do
    stop_serving
    serve --cut-on "$place"
    "$host" --database "$database" --create-demo 600 >"$folder/out" 2>"$folder/err"
    code=$?
    [ "$code" = 1 ] || { echo "$place: exit $code"; failed=1; }
    grep -q '^zulhost: the connection to the server is lost' "$folder/err" || { echo "$place: $(cat "$folder/err")"; failed=1; }
done
# Nothing stands in the way of the next one.
stop_serving
serve
"$host" --database "$database" --create-demo 5 || failed=1
"$host" --database "$database" --create-demo 5 2>"$folder/err" && { echo "made over another"; failed=1; }
grep -q 'already an object' "$folder/err" || { cat "$folder/err"; failed=1; }
exit $failed
