# What the scripts share. Sourced by bash; sets `root` to the top of the source tree.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc)

# Where things are kept that take long to fetch or make, for all working copies of one user.
# A machine may offer no home that can be written: then they stay in the build folder.
qlx_cache() {
  local base=${QLX_CACHE:-${XDG_CACHE_HOME:-${HOME:-/nonexistent}/.cache}/qlx}
  if ! mkdir -p "$base" 2>/dev/null || ! [ -w "$base" ]; then
    base=$root/build/cache
    mkdir -p "$base"
  fi
  echo "$base"
}

fail() {
  echo "$*" >&2
  exit 1
}

# step NAME COMMAND... - runs a command in silence, its output in $step_log. While it runs, a terminal shows the last
# line that it wrote, and any other output gets one line in half a minute. Answers the command's exit code.
step_log=$(mktemp)
trap 'rm -f "$step_log"' EXIT
step() {
  local name=$1 start=$SECONDS shown=$SECONDS last
  shift
  "$@" >"$step_log" 2>&1 </dev/null &
  local pid=$!
  while kill -0 $pid 2>/dev/null; do
    if [ -t 1 ]; then
      last=$(tail -n 1 "$step_log" | tr -cd '[:print:]' | cut -c 1-70)
      printf '\r\033[K  ... %s: %s' "$name" "$last"
    elif ((SECONDS - shown >= 30)); then
      shown=$SECONDS
      last=$(tail -n 1 "$step_log" | tr -cd '[:print:]' | cut -c 1-70)
      echo "  ... $name, $((SECONDS - start)) s: $last"
    fi
    sleep 0.2
  done
  [ -t 1 ] && printf '\r\033[K'
  wait $pid
}

# sources PATTERN... - our files whose names match, each ended by a zero byte. The inputs of fuzz targets are no texts.
sources() {
  local name names=()
  for name in "$@"; do
    names+=(-o -name "$name")
  done
  find "$root" \( -path "$root/build" -o -path "$root/out" -o -path "$root/fuzz/corpus" -o -name .git -o -name node_modules \) -prune -o \
    -type f \( "${names[@]:1}" \) -print0
}
