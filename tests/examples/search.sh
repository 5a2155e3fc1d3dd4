#!/usr/bin/env bash
# search.sh CLICKS COMPONENT RUNTIME-FOLDER COMMAND…: a host of the documentation shows the main window, somebody searches in
# it and closes it. The component stands alone in a folder of its own, so that its log is this run's; what the search could
# not do would stand there. FOLDER in the command is that folder. With ZUL_ROWS set the grid must show so many.
set -euo pipefail
clicks=$1 component=$2 runtime=$3
shift 3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/component" "$folder/classes"
cp "$component" "$folder/component/libZul_MessageBuilder.so"
cp "$(dirname "$component")"/*.tlb "$folder/component"
ln -s "$runtime"/libZul_Automation.so* "$folder/component"
printf '[{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}]\nProgID=Zul_MessageBuilder.SmsCreator\nLibrary=%s\n' \
    "$folder/component/libZul_MessageBuilder.so" >"$folder/classes/zul.ini"
export ZUL_AUTOMATION_SYSTEM_REGISTRY=$folder/classes HOME=$folder XDG_DATA_HOME=$folder XDG_STATE_HOME=$folder/state \
    QT_QPA_PLATFORM=offscreen LD_LIBRARY_PATH=$folder/component PYTHONUNBUFFERED=1
unset XDG_CONFIG_HOME
timeout 60 env LD_PRELOAD="$clicks" "${@/FOLDER/$folder/component}" >"$folder/said" || { cat "$folder/said" >&2; exit 1; }
cat "$folder/said"
grep -qx searched "$folder/said" || { echo "nobody searched" >&2; exit 1; }
log=$(find "$folder" -name Zul_Messagebuilder.log)
if [ -n "$log" ] && grep -a . "$log" >&2; then
    echo "the search left this in the log" >&2
    exit 1
fi
[ -z "${ZUL_ROWS:-}" ] || grep -qx "rows $ZUL_ROWS" "$folder/said" || { echo "the grid is not filled" >&2; exit 1; }
