#!/usr/bin/env bash
# End-to-end test of the installed zo: installs the build into a scratch prefix and drives the
# binary there the way a user would, checking outputs, exit codes, messages and that failed runs
# leave no output file behind.
# Usage: RunToolTest.sh BUILD_DIR WORK_DIR TESTDATA_PROGRAM SAMPLE_EDGES
set -u
build=$1 work=$2 testdata=$3 sample=$4
rm -rf "$work"
mkdir -p "$work/data"
cmake --install "$build" --prefix "$work/prefix" >/dev/null || { echo "install failed"; exit 1; }
zo="$work/prefix/bin/zo"
d="$work/data"
# The options database goes into the scratch folder, not the user's.
export XDG_CONFIG_HOME="$work/config"
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# expect CODE TEXT COMMAND...: the command exits with CODE and its output contains TEXT.
expect() {
  local code=$1 text=$2 out rc
  shift 2
  out=$("$@" 2>&1); rc=$?
  [ "$rc" -eq "$code" ] || fail "$* exited with $rc, not $code: $out"
  [[ "$out" == *"$text"* ]] || fail "$* said '$out', not '$text'"
}
# expect_error TEXT COMMAND...: exit code 1, one line on standard error containing TEXT, nothing on
# standard output, and no file added to the data folder.
expect_error() {
  local text=$1 before after err rc
  shift
  before=$(ls -A "$d")
  err=$("$@" 2>&1 >/dev/null); rc=$?
  after=$(ls -A "$d")
  [ "$rc" -eq 1 ] || fail "$* exited with $rc, not 1: $err"
  [ "$(printf '%s\n' "$err" | wc -l)" -eq 1 ] || fail "$* wrote more than one line: $err"
  [[ "$err" == "zo: "*"$text"* ]] || fail "$* said '$err', not '$text'"
  [ "$before" = "$after" ] || fail "$* left files behind: $(comm -13 <(echo "$before") <(echo "$after"))"
}

# Archives: a 20 MB round trip, byte for byte, and info on a packed and on a plain file.
"$testdata" bytes "$d/big.bin" 20971520 || fail "no test data"
expect 0 "20971520 bytes packed" "$zo" archive pack "$d/big.bin" "$d/big.zoa"
expect 0 "recognised (\"Halvo AG, 2005, comp\")" "$zo" archive info "$d/big.zoa"
expect 0 "uncompressed size: 20971520 bytes" "$zo" archive info "$d/big.zoa"
expect 0 "method:            2 (deflate)" "$zo" archive info "$d/big.zoa"
expect 0 "not recognised" "$zo" archive info "$d/big.bin"
expect 0 "20971520 bytes unpacked" "$zo" archive unpack "$d/big.zoa" "$d/big.out"
cmp -s "$d/big.bin" "$d/big.out" || fail "the unpacked 20 MB file differs from the original"

# Checksums: md5sum's digest and layout; a text hashes its UTF-16 code units.
[ "$("$zo" md5 "$d/big.bin")" = "$(md5sum "$d/big.bin")" ] || fail "zo md5 differs from md5sum"
expect 0 "$(printf 'a\0' | md5sum | cut -c1-32)" "$zo" md5 --text a
[ "$("$zo" uuid -n 3 | grep -cE '^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$')" -eq 3 ] || fail "zo uuid -n 3"

# Graphs: the path, its length and the Graphviz file with the path in red.
expect 0 "path: home -> park -> library -> school" "$zo" graph path "$sample" home school --dot "$d/map.dot"
expect 0 "length: 5.5" "$zo" graph path "$sample" home school
head -n 1 "$d/map.dot" | grep -q "^digraph G {" || fail "map.dot is no digraph"
[ "$(grep -c 'color = red, penwidth' "$d/map.dot")" -eq 3 ] || fail "map.dot does not mark the path's 3 connections"
grep -q 'park -> library \[label = "3.500000", color = red' "$d/map.dot" || fail "map.dot misses park -> library"
if command -v dot >/dev/null; then
  expect 0 "wrote" "$zo" graph path "$sample" home school --png "$d/map.png"
  [ "$(head -c 4 "$d/map.png" | od -An -tx1 | tr -d ' ')" = "89504e47" ] || fail "map.png is no PNG"
fi
expect_error "\`dot\` program was not found" env PATH=/nonexistent "$zo" graph path "$sample" home school --png "$d/x.png"

# Floats: exact round trip of a smooth field, smaller than gzip -6 makes it.
"$testdata" field "$d/field.raw" 1024 1024 || fail "no field data"
expect 0 "MB/s" "$zo" floats pack "$d/field.raw" "$d/field.zof" --width 1024 --predict left-up
expect 0 "1048576 floats unpacked" "$zo" floats unpack "$d/field.zof" "$d/field.out"
cmp -s "$d/field.raw" "$d/field.out" || fail "the unpacked floats differ from the original"
packed=$(stat -c %s "$d/field.zof")
gzipped=$(gzip -6 -c "$d/field.raw" | wc -c)
[ "$packed" -lt "$gzipped" ] || fail "floats packed into $packed bytes, gzip -6 into $gzipped"

# Options: a value written, read back and deleted.
expect 0 "" "$zo" options set current-user 'Software\Zo' Greeting "hello there"
expect 0 "hello there" "$zo" options get current-user 'Software\Zo' Greeting
expect 0 "" "$zo" options set 1 'Software\Zo' Count --type dword -- -2
expect 0 "4294967294" "$zo" options get HKEY_CURRENT_USER 'Software\Zo' Count --type dword
expect 0 "" "$zo" options delete current-user 'Software\Zo' Greeting

# Every user error: exit code 1, one clear line, no output file left behind.
head -c 20 "$d/big.zoa" > "$d/short.zoa"
head -c 100000 "$d/big.zoa" > "$d/cut.zoa"
head -c 5000 "$d/field.zof" > "$d/cut.zof"
printf 'a b 1\nb c\n' > "$d/bad.edges"
printf 'a b 1\nb c -2\n' > "$d/negative.edges"
expect_error "missing.bin: no such file" "$zo" archive pack "$d/missing.bin" "$d/out.zoa"
expect_error "missing.zoa: no such file" "$zo" archive info "$d/missing.zoa"
expect_error "short.zoa: truncated compressed archive" "$zo" archive unpack "$d/short.zoa" "$d/out.bin"
expect_error "cut.zoa: truncated or damaged" "$zo" archive unpack "$d/cut.zoa" "$d/out.bin"
expect_error "big.bin: is not a compressed archive" "$zo" archive unpack "$d/big.bin" "$d/out.bin"
expect_error "missing.bin: no such file" "$zo" md5 "$d/missing.bin"
expect_error "bad.edges: line 2: expected \"from to weight\", found 2 fields" "$zo" graph path "$d/bad.edges" a b
expect_error "negative.edges: line 2: weight -2 is negative" "$zo" graph path "$d/negative.edges" a c --dot "$d/x.dot"
expect_error "has no node named \"nowhere\"" "$zo" graph path "$sample" home nowhere --dot "$d/x.dot"
expect_error "has no path from home to harbour" "$zo" graph path "$sample" home harbour --dot "$d/x.dot"
expect_error "cut.zof: damaged or truncated packed float file" "$zo" floats unpack "$d/cut.zof" "$d/out.raw"
expect_error "unknown category" "$zo" options get attic 'Software\Zo' Greeting
expect_error "no such text value" "$zo" options get current-user 'Software\Zo' Greeting
# Command lines the tool cannot read exit with 2.
expect 2 "Try 'zo archive --help'" "$zo" archive pack "$d/big.bin"
expect 2 "unknown option --bogus" "$zo" graph path "$sample" home school --bogus
expect 0 "usage: zo floats pack" "$zo" floats --help

[ "$failures" -eq 0 ] && echo "zo end-to-end: all checks passed"
exit $((failures > 0))
