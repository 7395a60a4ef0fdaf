# Sourced by the scripts of the checkout. Needs bash and the log of what is going on.

# step_of LOG: "downloading 3 of 95 packages", "installing 12 of 95 packages", "compiling 12 of 290" or "testing 3 of 51",
# as the log has it so far; nothing before any of these.
step_of() {
  tr '\r' '\n' <"$1" 2>/dev/null | awk '
    / newly installed, / { for (i = 2; i <= NF; ++i) if ($i == "newly") packages = $(i - 1) }
    packages && /^Get:/ { step = "downloading " ++got " of " packages " packages" }
    packages && /^Setting up / { step = "installing " ++set_up " of " packages " packages" }
    match($0, /^\[[0-9]+\/[0-9]+\]/) { step = "compiling " substr($0, 2, RLENGTH - 2) }
    / Test +#/ && match($0, /^ *[0-9]+\/[0-9]+/) { step = "testing " substr($0, 1, RLENGTH) }
    END { gsub(/ +/, " ", step); sub(/\//, " of ", step); print step }'
}

# show_progress PID LOG NAME: while the process runs, one line at the terminal says how far it is, and how many seconds are
# left if what is to come takes as long as what was done. Where standard error is no terminal, nothing.
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
