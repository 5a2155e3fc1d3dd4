# Sourced by play.sh: a database of a Transact-SQL server, empty. Sets `database`; ends the play with 77 when there is
# no server.
#
# A comment "# cut: OCCURRENCE ROWS TEXT" in a scenario has the stand-in hang up at the first, second … request that
# contains TEXT, once the demo database stands: instead of answering it ("-"), or behind so many rows. What the
# comments "# then: SQL" ask for is looked up on a new connection when the play is over, and its rows follow the output.
if [ "$engine" = server ]; then
    database=${ZUL_TEST_TSQL:-}
    [ -n "$database" ] || { echo "skipped: ZUL_TEST_TSQL names no server"; exit 77; }
    "$program" "$database" || exit 1
    trap '"$program" "$database"; rm -rf "$folder"' EXIT
else
    # The stand-in serves until its input ends, with this shell at the latest.
    serve() {
        rm -f "$folder/serve.out" # what an earlier server said
        mkfifo "$folder/serve.in"
        "$program" "$folder/server.db" "$@" <"$folder/serve.in" >"$folder/serve.out" 2>"$folder/serve.err" &
        server=$!
        exec 7>"$folder/serve.in"
        rm "$folder/serve.in"
        database=
        for _ in $(seq 200); do
            [ -e "$folder/serve.out" ] && read -r database <"$folder/serve.out" && break
            kill -0 "$server" 2>/dev/null || break
            sleep 0.05
        done
        [ -n "$database" ] && return
        echo "skipped: $(cat "$folder/serve.err")"
        wait "$server"
        exit $?
    }
    stop_serving() {
        exec 7>&-
        wait "$server"
    }
    trap 'stop_serving; rm -rf "$folder"' EXIT
    afterwards() {
        grep -q '^# then:' "$scenario" || return
        stop_serving
        serve
        sed -n 's/^# then: *\(.*\)/sql "\1"/p' "$scenario" |
            "$host" --database "$database" --component "$folder/libZul_MessageBuilder.so" --scenario - \
                >>"$folder/out" 2>>"$folder/err"
    }
    if grep -q '^# cut:' "$scenario"; then
        serve
        "$host" --database "$database" --create-demo "${customers:-0}" || exit 1
        stop_serving
        customers=
        read -r occurrence rows text <<<"$(setting cut)"
        cut=(--cut-on "$text" --cut-at "$occurrence")
        [ "$rows" = - ] || cut+=(--cut-after-rows "$rows")
        serve "${cut[@]}"
        created=1
    else
        serve
    fi
fi
