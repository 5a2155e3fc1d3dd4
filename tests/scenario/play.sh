#!/usr/bin/env bash
# play.sh ZULHOST COMPONENT NAME.scenario [ENGINE PROGRAM]: plays the scenario on a new demo database in a folder of
# its own and compares what comes of it with NAME.expected beside it. With ZUL_PLAY=wine both are Windows' (play-wine.sh).
#
# The database is a file, or with ENGINE "standin" one behind the stand-in of a Transact-SQL server (PROGRAM serves
# it), or with "server" the one that ZUL_TEST_TSQL names (PROGRAM drops its tables). What is expected is the same.
#
# Comments at the head of a scenario say how it is played:
#   # customers: 50                 customers of the demo database (0)
#   # options: --show sms,mail      further options of zulhost
#   # locale: it_IT.UTF-8           (ZUL_TEST_LOCALE, else it_IT.UTF-8)
#   # file NAME: A\nB               a file that lies in the folder beforehand, with the lines A and B
#   # server: A\nB                  an FTP server on 127.0.0.1 has them as export.txt; its port is @PORT@ in the
#                                   scenario, as the folder of the play is @FOLDER@
#   # show: NAME NAME               files whose lines follow at the end, as "NAME: LINE"
#   # unordered                     it reads rows of statements without an order, which a server owes none: there,
#                                   rows that follow each other are compared sorted, without their numbers
#
# In NAME.expected a line is compared to the letter; one that begins with "~ " is a regular expression for one line;
# "@" stands for the folder in which the scenario is played. What zulhost wrote to standard error follows the output
# as lines "error …", the exit code as "exit N", the component's log, when a comment "# log" asks for it, as lines
# "log …" without their time stamps, and the journal, when a comment "# journal" asks for it, as it is.
set -u
host=$1 component=$2 scenario=$3 engine=${4:-file} program=${5:-}
expected=${scenario%.scenario}.expected
here=$(cd "$(dirname "$0")" && pwd)

setting() { sed -n "s/^# $1: *//p" "$scenario" | head -n 1; }

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
. "$here/play-${ZUL_PLAY:-linux}.sh"
place
export no_proxy=127.0.0.1
locale=$(setting locale)
export LC_ALL=${locale:-${ZUL_TEST_LOCALE:-it_IT.UTF-8}}
customers=$(setting customers)
database=$folder/test.db
[ "$engine" = file ] || . "$here/server.sh"
[ -n "${created:-}" ] || run --database "$database" --create-demo "${customers:-0}" >"$folder/created" 2>&1 ||
    { cat "$folder/created"; echo "no demo database"; exit 1; }

sed -n 's/^# file \([^:]*\): */\1\t/p' "$scenario" | while IFS=$'\t' read -r name lines; do
    mkdir -p "$(dirname "$folder/$name")"
    printf '%b\n' "$lines" >"$folder/$name"
done

port=@PORT@
if grep -q '^# server' "$scenario"; then
    # Without the other server's input, which must end when this shell lets go of it.
    coproc SERVE { exec 7>&-; exec "$ZUL_FTPSERVE"; }
    { printf '%b\n' "$(setting server)"; echo .; } >&"${SERVE[1]}"
    read -r port <&"${SERVE[0]}"
fi

journal=()
grep -q '^# journal' "$scenario" && journal=(--journal journal.txt)
shown=$(native "$folder" | sed 's|\\|\\\\\\\\|g')
sed "s|@PORT@|$port|g; s|@FOLDER@|$shown|g" "$scenario" >"$folder/played.scenario"
read -r -a options <<<"$(setting options)"
[ "$engine" != file ] || database=test.db
(cd "$folder" && run --database "$database" --component "$component" "${journal[@]}" \
    "${options[@]}" --scenario played.scenario) >"$folder/out" 2>"$folder/err"
code=$?
[ -z "${cut:-}" ] || afterwards
{
    cat "$folder/out"
    sed 's/^/error /' "$folder/err"
    echo "exit $code"
    if grep -q '^# log' "$scenario" && [ -e "$folder/Zul_Messagebuilder.log" ]; then
        sed 's/^[^|]* | /log /' "$folder/Zul_Messagebuilder.log"
    fi
    [ ${#journal[@]} -eq 0 ] || cat "$folder/journal.txt"
    for name in $(setting show); do
        [ ! -e "$folder/$name" ] || sed "s|^|$name: |" "$folder/$name"
    done
} | plain | sed "s|$port|@PORT@|g" >"$folder/actual"

if [ "${ZUL_SCENARIO_WRITE:-}" = 1 ]; then
    sed "s|$folder|@|g" "$folder/actual" >"$expected"
    exit 0
fi

# Lines "row …" or "sql …" that follow each other, patterns of them too, by the first text in them.
sorted() {
    awk '
        function flush(   i, j, k, l) {
            for (i = 2; i <= n; i++) {
                k = key[i]; l = held[i]
                for (j = i - 1; j > 0 && key[j] > k; j--) { key[j + 1] = key[j]; held[j + 1] = held[j] }
                key[j + 1] = k; held[j + 1] = l
            }
            for (i = 1; i <= n; i++) print held[i]
            n = 0
        }
        match($0, /^(~ )?(row [0-9]+|sql) "/) {
            word = $0 ~ /^(~ )?row/ ? "row" : "sql"
            if (word != last) flush()
            last = word
            held[++n] = $0
            sub(/row [0-9]+ /, "row ", held[n])
            key[n] = held[n]
            sub(/^~ /, "", key[n])
            split(key[n], parts, "\"")
            key[n] = sprintf("%12s", parts[2])
            next
        }
        { flush(); last = ""; print }
        END { flush() }'
}

# A server has another connection string, and its own texts for what it refuses.
if [ "$engine" != file ]; then
    for each in "$folder/actual" "$expected"; do
        sed -E -e 's/-connectionstring:[^"]*/-connectionstring:@connection/' \
            -e 's/"error":".*"(\\?\})$/"error":"@"\1/' \
            -e 's/(Error -[0-9]+) \\?\(.*\\?\) in procedure/\1 @ in procedure/' \
            -e 's/(\| -[0-9]+-)[^|]* (\\?\|)/\1@ \2/' "$each" >"$folder/$(basename "$each").same"
        if grep -q '^# unordered' "$scenario"; then
            sorted <"$folder/$(basename "$each").same" >"$folder/sorted"
            mv "$folder/sorted" "$folder/$(basename "$each").same"
        fi
    done
    mv "$folder/actual.same" "$folder/actual"
    expected=$folder/$(basename "$expected").same
fi

if declare -F alike >/dev/null; then
    sed "s|$folder|@|g" "$folder/actual" | alike >"$folder/actual.alike"
    alike <"$expected" >"$folder/$(basename "$expected").alike"
    mv "$folder/actual.alike" "$folder/actual"
    expected=$folder/$(basename "$expected").alike
fi

failed=0
line=0
while IFS= read -r wanted <&3 || [ -n "$wanted" ]; do
    line=$((line + 1))
    if ! IFS= read -r got <&4; then
        printf '%s:%s: missing\n  %s\n' "$expected" "$line" "$wanted"
        failed=1
        break
    fi
    got=${got//"$folder"/@}
    case $wanted in
    '~ '*) [[ $got =~ ^${wanted#\~ }$ ]] && continue ;;
    *) [ "$got" = "$wanted" ] && continue ;;
    esac
    printf '%s:%s:\n  wanted %s\n  got    %s\n' "$expected" "$line" "$wanted" "$got"
    failed=1
done 3<"$expected" 4<"$folder/actual"
if [ "$line" -lt "$(wc -l <"$folder/actual")" ]; then
    echo "more came than was expected:"
    tail -n "+$((line + 1))" "$folder/actual"
    failed=1
fi
exit $failed
