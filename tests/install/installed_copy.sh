#!/usr/bin/env bash
# installed_copy.sh BUILD SOURCE WORK LIBDIR COMPILER: installs a build, builds the examples against the copy in each way
# that an application can, runs them, and looks at what they made and at what the library shows.
set -euo pipefail
build=$1 source=$2 work=$3 libdir=$4 compiler=$5

fail() { printf 'FAILED: %s\n' "$*" >&2; exit 1; }

# expect_pixel FILE X Y R G B: within 2 a channel, as mixing rounds.
expect_pixel() {
  local file=$1 x=$2 y=$3 got channel
  read -ra got < <(od -An -tu1 -j $(($(stat -c %s "$file") - 640 * 360 * 3 + (y * 640 + x) * 3)) -N 3 "$file")
  shift 3
  for channel in 0 1 2; do
    (((got[channel] - $1) ** 2 <= 4)) || fail "$file at $x, $y: channel $channel is ${got[channel]}, want $1"
    shift
  done
}

# The rows from 280 on hold the timecode's white letters and its black outline.
expect_letters() {
  tail -c $((640 * 80 * 3)) "$1" | od -An -v -tu1 | awk '
    { for (i = 1; i <= NF; ++i) { white += $i > 250; black += $i < 5 } }
    END { exit !(white > 300 && black > 300) }' || fail "$1: no timecode"
}

look_at() {
  local programs=$1
  "$programs/logo_and_timecode" "$work/frame.ppm"
  expect_pixel "$work/frame.ppm" 72 72 230 230 0
  expect_pixel "$work/frame.ppm" 42 42 0 0 0
  expect_pixel "$work/frame.ppm" 600 20 96 96 96
  expect_letters "$work/frame.ppm"
  diff <("$programs/follow_faces" "$source/examples/sample_track.txt") - <<'WANT'
frame 0: label at 100, 140
frame 1: label at 110, 144
frame 2: label at 122, 150
frame 4: label at 150, 160
WANT
  diff <("$programs/saved_stack" "$work/stack.bin") - <<'WANT'
2 items were loaded, 2 are left
the last one went from 40 to 2040
WANT
  [ "$(head -c 4 "$work/stack.bin" | od -An -tu4 | tr -d ' ')" = 54 ] || fail 'a stack begins with its header'
  printf '0 1 2 3 4\n1 2 three 4 5\n' >"$work/bad.txt"
  if "$programs/follow_faces" "$work/bad.txt" 2>"$work/said"; then fail 'a bad line was taken'; fi
  grep -q 'bad.txt:2: ' "$work/said" || fail 'the bad line is not named'
}

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/prefix"   # nothing in it may know where it was put first

cmake -S "$source/examples" -B "$work/found" -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" >/dev/null
cmake --build "$work/found" >/dev/null
look_at "$work/found"

export PKG_CONFIG_PATH=$work/prefix/$libdir/pkgconfig LD_LIBRARY_PATH=$work/prefix/$libdir
for standard in 17 20; do
  mkdir "$work/plain$standard"
  for example in logo_and_timecode follow_faces saved_stack; do
    # shellcheck disable=SC2046 # the flags are words
    "$compiler" "-std=c++$standard" -Wall -Wextra -Werror "$source/examples/$example.cpp" -pthread \
      $(pkg-config --cflags --libs vellumcaster) -o "$work/plain$standard/$example"
  done
  look_at "$work/plain$standard"
done

shown=$(nm -D --defined-only "$LD_LIBRARY_PATH/libvellumcaster.so" | awk '{print $NF}' | c++filt | sed 's/[[(].*//' | sort)
marked=$(sed -n 's/.*VELLUM_API .* [*]*\([A-Za-z0-9]*\)(.*/vellumcaster::\1/p' "$source"/include/vellumcaster/*.h | sort)
[ -n "$marked" ] || fail 'no marked functions found'
diff <(printf '%s\n' "$marked") <(printf '%s\n' "$shown") || fail 'the library shows other names than the marked ones'
