# shellcheck shell=bash disable=SC2154  # part of ./run
# Fuzz, and fuzz-one, by which it runs its targets.

# What one target's run says at its end: how much it tried, and whether it found something. The inputs that failed are
# left beside the log.
fuzz_one() {  # TARGET SECONDS
  local target=$1 seconds=$2 folder=build/fuzz/$1 status=0 tried corpus=tests/fuzz/corpus/$1 verdict="nothing found"
  local options=("-max_total_time=$seconds" -max_len=4096 -timeout=30 -print_final_stats=1 "-artifact_prefix=$folder/")
  if [[ -e tests/fuzz/dictionaries/$target.dict ]]; then options+=("-dict=tests/fuzz/dictionaries/$target.dict"); fi
  rm -rf "$folder"
  mkdir -p "$folder/inputs"
  build/sanitize/tests/fuzz/"${target}_fuzz" "${options[@]}" "$folder/inputs" "$corpus" >"$folder/log" 2>&1 || status=$?
  tried=$(sed -n 's/^stat::number_of_executed_units: *//p' "$folder/log")
  if ((status != 0)) || [[ -z $tried ]]; then
    verdict="FAILED: $folder/log"
    status=1
  fi
  printf '%12s  %-20s %s\n' "${tried:-?}" "$target" "$verdict"
  if ((status != 0)); then grep -a -A 3 -e "^$target: " -e '^SUMMARY: ' -e '^==[0-9]*== \?ERROR: ' "$folder/log" || true; fi
  return "$status"
}

# Two at a time. libFuzzer stops a target at its first finding.
fuzz() {  # [SECONDS [TARGET...]]
  local seconds=${1:-60} targets all
  [[ $seconds =~ ^[1-9][0-9]*$ ]] || misused "fuzz: how many seconds? '$seconds'"
  shift || true
  mapfile -t all < <(cd tests/fuzz/corpus && printf '%s\n' *)
  targets=("$@")
  only_options "" "${all[*]}" "$@"
  if ((${#targets[@]} == 0)); then targets=("${all[@]}"); fi
  need fuzz "${test_packages[@]}"
  build sanitize --target fuzz
  step "Fuzzing, $seconds seconds for each of ${#targets[@]} targets"
  printf '%12s  %s\n' INPUTS TARGET
  printf '%s\0' "${targets[@]}" | xargs -0 -I '{}' -P 2 ./run fuzz-one '{}' "$seconds" ||
    fail "a target failed; its input, crash-*, belongs into tests/fuzz/corpus/TARGET once it is mended"
}
