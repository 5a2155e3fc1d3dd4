# native PATH: how Windows programs under Wine call a path of this machine.
native() { printf '%s' "Z:${1//\//\\}"; }
