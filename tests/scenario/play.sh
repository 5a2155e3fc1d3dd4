#!/usr/bin/env bash
# play.sh ZULHOST COMPONENT NAME.scenario: plays the scenario on a new demo database in a folder of its own and
# compares what comes of it with NAME.expected beside it.
#
# Comments at the head of a scenario say how it is played:
#   # customers: 50                 customers of the demo database (0)
#   # options: --show sms,mail      further options of zulhost
#   # locale: it_IT.UTF-8           (ZUL_TEST_LOCALE, else it_IT.UTF-8)
#   # file NAME: A\nB               a file that lies in the folder beforehand, with the lines A and B
#   # server: A\nB                  an FTP server on 127.0.0.1 has them as export.txt; its port is @PORT@ in the
#                                   scenario, as the folder of the play is @FOLDER@
#   # show: NAME NAME               files whose lines follow at the end, as "NAME: LINE"
#
# In NAME.expected a line is compared to the letter; one that begins with "~ " is a regular expression for one line;
# "@" stands for the folder in which the scenario is played. What zulhost wrote to standard error follows the output
# as lines "error …", the exit code as "exit N", and the journal, when a comment "# journal" asks for it, as it is.
set -u
host=$1 component=$2 scenario=$3
expected=${scenario%.scenario}.expected

setting() { sed -n "s/^# $1: *//p" "$scenario" | head -n 1; }

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# The component keeps its log and its layout file beside its library, and its settings in the user's home.
ln -s "$component" "$folder/libZul_MessageBuilder.so"
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data XDG_CACHE_HOME=$folder/cache
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
locale=$(setting locale)
export LC_ALL=${locale:-${ZUL_TEST_LOCALE:-it_IT.UTF-8}}
customers=$(setting customers)
"$host" --database "$folder/test.db" --create-demo "${customers:-0}" || { echo "no demo database"; exit 1; }

sed -n 's/^# file \([^:]*\): */\1\t/p' "$scenario" | while IFS=$'\t' read -r name lines; do
    printf '%b\n' "$lines" >"$folder/$name"
done

port=@PORT@
if grep -q '^# server' "$scenario"; then
    coproc SERVE { "$ZUL_FTPSERVE"; }
    { printf '%b\n' "$(setting server)"; echo .; } >&"${SERVE[1]}"
    read -r port <&"${SERVE[0]}"
fi

journal=()
grep -q '^# journal' "$scenario" && journal=(--journal "$folder/journal.txt")
sed "s|@PORT@|$port|g; s|@FOLDER@|$folder|g" "$scenario" >"$folder/played.scenario"
read -r -a options <<<"$(setting options)"
(cd "$folder" && "$host" --database test.db --component "$folder/libZul_MessageBuilder.so" "${journal[@]}" \
    "${options[@]}" --scenario played.scenario) >"$folder/out" 2>"$folder/err"
code=$?
{
    cat "$folder/out"
    sed 's/^/error /' "$folder/err"
    echo "exit $code"
    [ ${#journal[@]} -eq 0 ] || cat "$folder/journal.txt"
    for name in $(setting show); do
        [ ! -e "$folder/$name" ] || sed "s|^|$name: |" "$folder/$name"
    done
} | sed "s|$port|@PORT@|g" >"$folder/actual"

if [ "${ZUL_SCENARIO_WRITE:-}" = 1 ]; then
    sed "s|$folder|@|g" "$folder/actual" >"$expected"
    exit 0
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
