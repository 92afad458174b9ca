# What the scripts of all engines share; to be sourced.

# use_chunks <pairs>: sets CHUNK, the number of pairs of one task, unless the caller did: an engine's own
# work on a task is worth many runs.
use_chunks() {
  [[ ${CHUNK:=$1} =~ ^[1-9][0-9]*$ ]] || refuse "CHUNK must be the number of pairs of a task"
}

# refuse <words>: a wrong call ends with one line.
refuse() { echo "$*" >&2; exit 2; }

# need_programs: exports VARNOTH and VARNOTH_TOOLS, the programs' whole paths.
need_programs() {
  local variable name program
  for variable in VARNOTH VARNOTH_TOOLS; do
    name=varnoth
    [ $variable = VARNOTH ] || name=varnoth-tools
    program=$(command -v "${!variable:-$name}") || refuse "there is no program ${!variable:-$name}: install it or set $variable"
    declare -gx "$variable=$(realpath "$program")"
  done
}

# open_stack <pairs> <results>: sets pairs and results to whole paths, and names to the pairs without results.
# Ends here where every pair has them.
open_stack() {
  [ -d "$1" ] || refuse "there is no directory $1"
  pairs=$(realpath "$1")
  local all name
  mapfile -t all < <(find "$pairs" -mindepth 1 -maxdepth 1 -name 'pair_*' -printf '%f\n' | sort)
  [ ${#all[@]} -gt 0 ] || refuse "there are no pairs in $1"
  [ "$(realpath -m "$2")" != "$pairs" ] || refuse "results in $1 would replace the pairs"
  results=$(realpath -m "$2")
  names=()
  for name in "${all[@]}"; do [ -e "$results/$name/OK.varnoth" ] || names+=("$name"); done
  [ ${#names[@]} -gt 0 ] || { echo "every pair has its results"; exit 0; }
}

# close_stack: tells how the pairs of names ended; fails unless all are done.
close_stack() {
  local name done=0 stopped=0
  for name in "${names[@]}"; do
    if [ -e "$results/$name/OK.varnoth" ]; then done=$((done + 1)); fi
    if [ -e "$results/stopped/$name.log" ]; then stopped=$((stopped + 1)); fi
  done
  echo "done $done, failed $((${#names[@]} - done - stopped)), stopped $stopped"
  [ "$done" -eq ${#names[@]} ]
}
