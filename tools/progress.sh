# Sourced by the scripts of the checkout. Needs bash and the log of a build or a test run that is going on.

# step_of LOG: "compiling 12 of 290" or "testing 3 of 51", as the end of the log has it; nothing before either.
step_of() {
  tail -c 20000 "$1" 2>/dev/null | tr '\r' '\n' | sed -nE \
    -e 's/^\[([0-9]+)\/([0-9]+)\].*/compiling \1 of \2/p' \
    -e 's/^ *([0-9]+)\/([0-9]+) Test +#.*/testing \1 of \2/p' \
    -e 's/^(installing) .*/\1 packages/p' | tail -n 1
}

# show_progress PID LOG NAME: while the process runs, one line at the terminal says how far it is, and how many seconds are
# left if what is to come takes as long as what was done. Silent where standard error is no terminal.
show_progress() {
  local pid=$1 log=$2 name=$3 begin=$SECONDS activity= step done total left
  [ -t 2 ] || return 0
  while kill -0 "$pid" 2>/dev/null; do
    step=$(step_of "$log")
    if [ "${step%% *}" != "$activity" ]; then
      activity=${step%% *}
      begin=$SECONDS
    fi
    left=
    if [[ "$step" =~ ([0-9]+)\ of\ ([0-9]+) ]]; then
      done=${BASH_REMATCH[1]} total=${BASH_REMATCH[2]}
      [ "$done" -lt 5 ] || left=", some $(((SECONDS - begin) * (total - done) / done)) s left"
    fi
    printf '\r\033[K%s: %s%s' "$name" "${step:-starting}" "$left" >&2
    sleep 1
  done
  printf '\r\033[K' >&2
}
