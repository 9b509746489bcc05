#!/usr/bin/env bash
# The shared library exports the names listed in EXPORTS, every one of them, and whatever
# belongs to a class named VD*; every plain C function exported is declared in C_HEADER.
# usage: check_exports.sh LIBRARY EXPORTS C_HEADER
set -euo pipefail
library=$1 list=$2 header=$3
scripts="$(cd "$(dirname "$0")/../../scripts" && pwd)"

exported=$("$scripts/exported-symbols" "$library")
listed=$(grep -v -e '^#' -e '^[[:space:]]*$' "$list" | sort -u)
# A member function template's name starts with its return type.
vd_member='^((non-)?virtual thunk to |covariant return thunk to |guard variable for |[^(<]* )?VD[A-Za-z0-9_]*(<.*>)?::'
vd_class_data='^(vtable|typeinfo|typeinfo name|VTT|construction vtable) for VD[A-Za-z0-9_]*(<.*>)?(-in-.*)?$'

unexpected=$(comm -23 <(echo "$exported") <(echo "$listed") |
    grep -v -E -e "$vd_member" -e "$vd_class_data" || true)
missing=$(comm -13 <(echo "$exported") <(echo "$listed"))
undeclared=$(nm -D --defined-only -P "$library" | awk '$2 == "T" && $1 !~ /^_Z/ { print $1 }' |
    while read -r entry; do
        grep -q -E "^float $entry\(char\* text, double number, char\* out\);" "$header" ||
            echo "$entry"
    done)

report() { # TITLE NAMES
    [ -z "$2" ] || { echo "$1"; echo "$2" | sed 's/^/  /'; status=1; }
}
status=0
report "exported but not part of the interface (hide it, or list it in $list):" "$unexpected"
report "listed in $list but not exported:" "$missing"
report "host entries exported but not declared in $header:" "$undeclared"
[ $status -ne 0 ] || echo "$(echo "$exported" | wc -l) exported symbols, all part of the interface"
exit $status
