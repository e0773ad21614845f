#!/usr/bin/env bash
# The build benchmark: orvhost's make engine against ninja running the very
# same command lines.
#
#   bench/build_bench.sh BIN_DIR WORK_DIR [FILES] [DELAY_MS]
#
# BIN_DIR holds orvhost, the plug-in and fakeads/ (a native build's bin
# folder); WORK_DIR is emptied and receives:
#
#   project/   bench.orv, src/fileNNNN.c and two shared headers, build.ninja
#   ads/       the ADS installation orvhost is pointed at (Bin, Include, Lib)
#   conf/      orvhost's configuration and registry, so the user's stay untouched
#   commands.log, *.out   the captured command lines, what the builds printed
#
# 1. The project is made with orvhost (new, add-target, add-file); all C files
#    but the first are written in the shape that add-file gave the first one.
# 2. Capture: ads/Bin holds scripts under the tools' names that log their own
#    path and argv, then run the simulated tool. orvhost builds the project
#    once, so every command line the plug-in gives is logged: per C file its
#    "-M" scan and its compile, then the link and the fromelf conversion.
# 3. build.ninja is written from the log: one edge per C file whose command
#    is its scan, then its compile, each with the argv the plug-in gave
#    (the scan's output is thrown away; orvhost's host reads it), inputs the
#    source and the dependency set the capture recorded for it; one edge for
#    the link over all objects, one for fromelf. No depfiles.
# 4. ads/Bin is given copies of the simulated tools in place of the scripts
#    (same folder, so the plug-in writes the same command lines again).
#    Each figure times `orvhost build -j N` on the project as it was made,
#    without objects, and `ninja -j N` on the same folder without objects:
#      - the full build at -j 2 with the tools as fast as they are;
#      - the full build at -j 4 with every scan and every compile taking
#        DELAY_MS (default 20) milliseconds (FAKEADS_DELAY_MS: the tools
#        sleep, so four run at once even on two cores);
#      - the build with nothing changed at -j 2, after the first figure's
#        builds (the median of five).
# 5. The objects of the two first full builds are compared, and the times
#    and the ratios orvhost/ninja printed beside their goals.
set -euo pipefail

if [ $# -lt 2 ]; then
  echo "usage: $0 BIN_DIR WORK_DIR [FILES] [DELAY_MS]" >&2
  exit 2
fi
bin=$(cd "$1" && pwd)
mkdir -p "$2"
work=$(cd "$2" && pwd)
files=${3:-2000}
delay_ms=${4:-20}
target=Debug
orvhost="$bin/orvhost"
fakeads="$bin/fakeads/Bin"
tools=(armasm armcc armcpp tcc tcpp armlink armar fromelf)

for need in "$orvhost" "$fakeads/armcc.exe"; do
  [ -x "$need" ] || { echo "build_bench: $need is missing (build the native tree first)" >&2; exit 2; }
done
command -v ninja >/dev/null || { echo "build_bench: ninja is not installed" >&2; exit 2; }

rm -rf "$work"
mkdir -p "$work/project/src" "$work/ads/Bin" "$work/ads/Include" "$work/ads/Lib" "$work/conf"
proj="$work/project"
log="$work/commands.log"
export ORVANE_CONFIG="$work/conf/orvhost.conf"
export ORVANE_REGISTRY="$work/conf/registry.reg"

now() { date +%s.%N; }
elapsed() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.3f", b - a }'; }
# A build with nothing changed takes tens of milliseconds: it is run
# noop_runs times and the median is taken. Output of the last run to $1.
noop_runs=5
noop_median() {
  local out=$1 i a b
  shift
  for ((i = 0; i < noop_runs; ++i)); do
    a=$(now)
    "$@" >"$out" 2>&1 || return 1
    b=$(now)
    elapsed "$a" "$b"
    echo
  done | sort -n | awk '{ v[NR] = $1 } END { printf "%s", v[int((NR + 1) / 2)] }'
}

# ---------------------------------------------------------------- the project
echo "build benchmark: generating $files C files in $proj"
cat >"$proj/src/config.h" <<'EOF'
/* Settings shared by the benchmark's sources. */
#ifndef BENCH_CONFIG_H
#define BENCH_CONFIG_H
#define BENCH_TABLE_SIZE 8
#define BENCH_SCALE 3
#endif
EOF
cat >"$proj/src/common.h" <<'EOF'
/* Declarations shared by the benchmark's sources. */
#ifndef BENCH_COMMON_H
#define BENCH_COMMON_H
#include "config.h"
typedef unsigned int bench_word;
bench_word bench_mix(bench_word a, bench_word b);
#endif
EOF
# Every 10th file includes common.h (and through it config.h), every 25th
# config.h, every 50th both; the rest include nothing.
awk -v n="$files" -v dir="$proj/src" 'BEGIN {
  for (i = 1; i <= n; ++i) {
    f = sprintf("%s/file%04d.c", dir, i)
    printf "/* file%04d.c: part of the build benchmark */\n", i > f
    if (i % 10 == 0) print "#include \"common.h\"" > f
    if (i % 25 == 0) print "#include \"config.h\"" > f
    if (i % 10 != 0 && i % 25 != 0) print "#define BENCH_TABLE_SIZE 8" > f
    printf "static const int table_%04d[BENCH_TABLE_SIZE] = {%d, %d, %d, %d, 5, 6, 7, 8};\n", i, i % 7, i % 11, i % 13, i % 17 > f
    printf "\nint func_%04d(int x)\n{\n", i > f
    print "    int k, sum = 0;" > f
    print "    for (k = 0; k < BENCH_TABLE_SIZE; ++k) {" > f
    printf "        sum += table_%04d[k] * x;\n", i > f
    print "    }" > f
    printf "    return sum + %d;\n}\n", i > f
    close(f)
  }
}'

cd "$proj"
"$orvhost" new bench.orv >/dev/null
"$orvhost" add-target bench.orv "$target" >/dev/null
"$orvhost" add-file bench.orv 'src/file0001.c' >/dev/null
# The other files: copies of the File element add-file wrote, renamed.
awk -v n="$files" '
  function emit(   i, j, line) {
    for (i = 2; i <= n; ++i) {
      for (j = 1; j <= count; ++j) {
        line = tmpl[j]
        gsub(/file0001/, sprintf("file%04d", i), line)
        print line
      }
    }
  }
  /<File RelativePath="src\\file0001\.c"/ { grab = 1 }
  grab {
    tmpl[++count] = $0
    print
    # The element ends with "</File>", or on its first line when it has no children.
    if ($0 ~ /<\/File>/ || (count == 1 && $0 ~ /\/>[[:space:]]*$/)) { grab = 0; emit() }
    next
  }
  { print }
' bench.orv >bench.orv.new
mv bench.orv.new bench.orv
"$orvhost" add-file bench.orv 'src/common.h' >/dev/null
"$orvhost" add-file bench.orv 'src/config.h' >/dev/null
listed=$(grep -c '<File RelativePath="src\\file[0-9]*\.c"' bench.orv || true)
[ "$listed" -eq "$files" ] || { echo "build_bench: the project lists $listed C files, not $files" >&2; exit 1; }
"$orvhost" show bench.orv >/dev/null
cp bench.orv "$work/bench.orv.made"

# ---------------------------------------------------------------- capture
echo "build benchmark: capturing the plug-in's command lines (one orvhost build through logging tools)"
cat >"$work/logtool" <<'EOF'
#!/usr/bin/env bash
# Logs how it was run (kind, source, output, then the command shell-quoted
# for sh), then runs the simulated tool of its own name.
q() {
  if [[ $1 =~ ^[A-Za-z0-9_./=+:,@%-]+$ ]]; then r=$1; else local s=${1//\'/\'\\\'\'}; r=\'$s\'; fi
}
q "$0"; line=$r
kind=other; src=-; obj=-; prev=
for a in "$@"; do
  q "$a"; line+=" $r"
  case $prev in -c) src=$a ;; -o | -output) obj=$a ;; esac
  [ "$a" = -M ] && kind=scan
  prev=$a
done
case ${0##*/} in
  armlink.exe) kind=link ;;
  fromelf.exe) kind=fromelf ;;
  *) if [ $kind = scan ]; then src=${*: -1}; elif [ "$src" != - ]; then kind=compile; fi ;;
esac
printf '%s\t%s\t%s\t%s\n' "$kind" "$src" "$obj" "$line" >>"@LOG@"
exec "@REAL@/${0##*/}" "$@"
EOF
for t in "${tools[@]}"; do
  sed -e "s|@LOG@|$log|" -e "s|@REAL@|$fakeads|" "$work/logtool" >"$work/ads/Bin/$t.exe"
  chmod +x "$work/ads/Bin/$t.exe"
done
"$orvhost" config set-tools-dir "$work/ads/Bin" >/dev/null
"$orvhost" build bench.orv --target "$target" -j 2 >"$work/capture.out" 2>&1 ||
  { echo "build_bench: the capturing build failed; see $work/capture.out" >&2; exit 1; }
deps_file="$proj/bench.orv.deps"
cp "$deps_file" "$work/bench.orv.deps.captured"
for kind in scan compile link fromelf; do
  got=$(awk -F'\t' -v k="$kind" '$1 == k' "$log" | wc -l)
  want=1
  case $kind in scan | compile) want=$files ;; esac
  [ "$got" -eq "$want" ] || { echo "build_bench: $got $kind commands captured, expected $want" >&2; exit 1; }
done
if awk -F'\t' '$1 == "other"' "$log" | grep -q .; then
  echo "build_bench: the plug-in ran a command that is not a scan, compile, link or fromelf:" >&2
  awk -F'\t' '$1 == "other"' "$log" >&2
  exit 1
fi

# The ninja file, from the captured command lines and dependency sets.
captured_deps="$work/bench.orv.deps.captured"
# Paths for ninja: "\" becomes "/", a leading "./" and the project folder go.
awk -F'\t' -v target="$target" -v proj="$proj" -v deps_file="$captured_deps" '
  function node(p) {
    gsub(/\\/, "/", p)
    sub(/^\.\//, "", p)
    if (index(p, proj "/") == 1) p = substr(p, length(proj) + 2)
    gsub(/\$/, "$$", p); gsub(/ /, "$ ", p); gsub(/:/, "$:", p)
    return p
  }
  function esc(s) { gsub(/\$/, "$$", s); return s }
  FILENAME == deps_file {
    if ($0 ~ /^target /) { in_target = (substr($0, 8) == target) }
    else if (in_target && $0 ~ /^source /) { source = substr($0, 8) }
    else if (in_target && $0 ~ /^  /) { deps[source] = deps[source] " " node(substr($0, 3)) }
    next
  }
  $1 == "scan" { scan[$2] = $4; next }
  $1 == "compile" { order[++n] = $2; obj[$2] = $3; cc[$2] = $4; next }
  $1 == "link" { link_out = $3; link_cmd = $4; next }
  $1 == "fromelf" { elf_out = $3; elf_cmd = $4; next }
  END {
    print "# The command lines orvhost ran for bench.orv, target " target "."
    print "ninja_required_version = 1.3"
    print ""
    print "rule scan_compile"
    print "  command = $scan >/dev/null 2>&1; $compile"
    print "  description = compile $in"
    print "rule run"
    print "  command = $cmd"
    print "  description = $out"
    print ""
    objects = ""
    for (i = 1; i <= n; ++i) {
      s = order[i]
      if (!(s in scan)) { print "build_bench: no scan captured for " s > "/dev/stderr"; exit 1 }
      source = node(s)
      extra = ""
      split(deps[s], d, " ")
      for (k in d) if (d[k] != "" && d[k] != source) extra = extra " " d[k]
      o = node(obj[s])
      objects = objects " " o
      print "build " o ": scan_compile " source (extra != "" ? " |" extra : "")
      print "  scan = " esc(scan[s])
      print "  compile = " esc(cc[s])
    }
    print ""
    print "build " node(link_out) ": run" objects
    print "  cmd = " esc(link_cmd)
    print "build " node(elf_out) ": run " node(link_out)
    print "  cmd = " esc(elf_cmd)
    print ""
    print "default " node(elf_out)
  }
' "$captured_deps" "$log" >"$proj/build.ninja"

# The simulated tools themselves, in the same folder.
for t in "${tools[@]}"; do
  rm -f "$work/ads/Bin/$t.exe"
  cp "$fakeads/$t.exe" "$work/ads/Bin/$t.exe"
done

# Both builders start from the project as it was made, without objects.
reset() {
  rm -rf "$proj/$target" "$deps_file" "$proj/.ninja_log" "$proj/.ninja_deps"
  cp "$work/bench.orv.made" "$proj/bench.orv"
  sync
}
# timed NAME COMMAND...: the seconds COMMAND takes, its output to NAME.out.
timed() {
  local out="$work/$1.out" a b
  shift
  a=$(now)
  "$@" >"$out" 2>&1 || { echo "build_bench: $* failed; see $out" >&2; return 1; }
  b=$(now)
  elapsed "$a" "$b"
}
objects_md5() { (cd "$proj" && find "$target" -type f -name '*.o' | LC_ALL=C sort | xargs md5sum) >"$work/$1"; }

# ---------------------------------------------------------------- cheap tools, -j 2
echo "build benchmark: full builds at -j 2 (orvhost, then ninja)"
reset
orv_full=$(timed orvhost-full "$orvhost" build bench.orv --target "$target" -j 2)
objects_md5 orvhost-objects.md5
echo "build benchmark: builds with nothing changed at -j 2 (median of $noop_runs)"
orv_noop=$(noop_median "$work/orvhost-noop.out" "$orvhost" build bench.orv --target "$target" -j 2) ||
  { echo "build_bench: orvhost's build with nothing changed failed; see $work/orvhost-noop.out" >&2; exit 1; }
if grep -q '^compiling ' "$work/orvhost-noop.out"; then
  echo "build_bench: orvhost's second build compiled something; see $work/orvhost-noop.out" >&2
  exit 1
fi
reset
nin_full=$(timed ninja-full ninja -C "$proj" -j 2)
objects_md5 ninja-objects.md5
nin_noop=$(noop_median "$work/ninja-noop.out" ninja -C "$proj" -j 2) ||
  { echo "build_bench: ninja's build with nothing changed failed; see $work/ninja-noop.out" >&2; exit 1; }
grep -q 'no work to do' "$work/ninja-noop.out" ||
  { echo "build_bench: ninja's second build did some work; see $work/ninja-noop.out" >&2; exit 1; }
if cmp -s "$work/orvhost-objects.md5" "$work/ninja-objects.md5"; then
  same="the $files objects are byte for byte the same"
else
  same="the objects DIFFER (compare $work/orvhost-objects.md5 and $work/ninja-objects.md5)"
fi

# ---------------------------------------------------------------- slow tools, -j 4
echo "build benchmark: full builds at -j 4, every scan and compile taking $delay_ms ms (orvhost, then ninja)"
export FAKEADS_DELAY_MS="$delay_ms,$delay_ms"
reset
orv_slow=$(timed orvhost-slow "$orvhost" build bench.orv --target "$target" -j 4)
reset
nin_slow=$(timed ninja-slow ninja -C "$proj" -j 4)
unset FAKEADS_DELAY_MS

# ---------------------------------------------------------------- figures
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { r = b > 0 ? a / b : 0; printf (r >= 10 ? "%.1f" : "%.2f"), r }'; }
secs() { awk -v a="$1" -v p="$2" 'BEGIN { printf "%." p "f", a }'; }
figure() {
  printf '  %-48s orvhost %s s, ninja %s s, ratio %s (goal: at most %s)\n' "$1" "$(secs "$2" "$5")" \
    "$(secs "$3" "$5")" "$(ratio "$2" "$3")" "$4"
}
echo
echo "build benchmark: $files C files, target $target; $same"
figure "full build, -j 2:" "$orv_full" "$nin_full" 1.1 1
figure "full build, -j 4, scan and compile $delay_ms ms each:" "$orv_slow" "$nin_slow" 1.25 1
figure "nothing changed, -j 2:" "$orv_noop" "$nin_noop" 1.5 2
