# Shared by the scripts; sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export CCACHE_DIR="${CCACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/kestrin-ccache}"
# So that another checkout finds what this one compiled.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
# No accessibility bus and no colour codes in logs.
export GTK_A11Y=none

say() { printf '\n== %s\n' "$*" >&2; }

as_root() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }

# build PRESET [TARGET...]: configures and builds quietly; on failure shows what the tools said.
build() {
  local preset=$1 log=build/$1.log
  shift
  mkdir -p build
  say "Building $preset (log: $log)"
  cmake --preset "$preset" ${KESTRIN_CONFIGURE:-} >"$log" 2>&1 || { cat "$log" >&2; return 1; }
  cmake --build --preset "$preset" --target "${@:-all}" >>"$log" 2>&1 || { tail -n 60 "$log" >&2; return 1; }
}

# The page side: the client module, the demo and the test pages, into web/dist.
build_web() {
  say "Building the page side"
  if [ ! -e web/node_modules/.package-lock.json ] || [ web/package-lock.json -nt web/node_modules/.package-lock.json ]; then
    # Not `npm ci`: npm 11 asks a lock file for the packages of platforms that a registry may not carry.
    (cd web && npm install --no-save --no-audit --no-fund --loglevel=error)
    touch web/node_modules/.package-lock.json
  fi
  (cd web && npm run --silent build)
}

# Runs a command on the display there is, else on a virtual one.
on_display() {
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then "$@"; else on_virtual_display "$@"; fi
}

# Runs a command under a Wayland compositor without a screen, and without an X display.
on_wayland() {
  local folder compositor status=0
  folder=$(mktemp -d)
  XDG_RUNTIME_DIR=$folder weston --backend=headless-backend.so --no-config --idle-time=0 --socket=kestrin \
    --width=1280 --height=1024 --log="$folder/log" &
  compositor=$!
  until [ -S "$folder/kestrin" ]; do
    kill -0 $compositor 2>/dev/null || { cat "$folder/log" >&2; return 1; }
    sleep 0.1
  done
  env -u DISPLAY GDK_BACKEND=wayland XDG_RUNTIME_DIR="$folder" WAYLAND_DISPLAY=kestrin "$@" || status=$?
  kill $compositor
  wait $compositor || true
  rm -rf "$folder"
  return $status
}

on_virtual_display() {
  env -u WAYLAND_DISPLAY GDK_BACKEND=x11 xvfb-run -a -s "-screen 0 1280x1024x24 -nolisten tcp" "$@"
}
