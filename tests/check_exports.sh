#!/bin/sh
# Checks that a plug-in module exports GetInterface and nothing else.
# usage: check_exports.sh elf|pe MODULE TOOL   (TOOL: nm, or the objdump of the target)
set -eu
kind=$1 module=$2 tool=$3
if [ "$kind" = elf ]; then
  exports=$("$tool" -D --defined-only "$module" | awk '$2 ~ /^[TDBRVW]$/ {print $3}' | sort)
else
  exports=$("$tool" -p "$module" | awk '/\[Ordinal\/Name Pointer\] Table/ {on=1; next} on && NF==0 {on=0} on {print $NF}' | sort)
fi
if [ "$exports" != "GetInterface" ]; then
  echo "$module exports:" >&2
  echo "$exports" >&2
  echo "expected exactly: GetInterface" >&2
  exit 1
fi
echo "$module exports only GetInterface"
