# shellcheck shell=bash disable=SC2154  # part of ./run
# What is done to the sources: format, and lint with lint-one, by which it looks at each file.

# Those of the sources that are in the work tree, new ones included.
sources() {  # PATTERN...
  local file
  git ls-files -z -c -o --exclude-standard -- "$@" | sort -zu | while IFS= read -r -d '' file; do
    if [[ -e $file ]]; then printf '%s\0' "$file"; fi
  done
}

linted=('corvane/*.cpp' 'examples/*.cpp' 'bench/*.cpp')

format() {  # [--check]
  local off
  only_options "" "--check" "$@"
  need format clang-format git
  if [[ ${1:-} == --check ]]; then
    step "Checking the format"
    off=$(sources '*.h' '*.cpp' | xargs -0 clang-format --dry-run 2>&1) || fail "$off"
    off=$(sed -n 's/^\([^:]*\):[0-9]*:.*\[-Wclang-format-violations\]$/\1/p' <<<"$off" | sort -u)
    [[ -z $off ]] || fail "./run format would change:
$off"
    echo "Nothing to change."
  else
    step "Formatting"
    sources '*.h' '*.cpp' | xargs -0 clang-format -i
  fi
}

lint() {
  local total status=0
  only_options "" "" "$@"
  need lint "${test_packages[@]}" clang-tidy git
  configure debug
  total=$(sources "${linted[@]}" | tr -cd '\0' | wc -c)
  step "Looking for bugs with clang-tidy in $total files"
  sources "${linted[@]}" | xargs -0 -n 1 -P "$(nproc)" ./run lint-one |
    awk -v total="$total" '/^checked / { printf "[%d/%d] %s\n", ++n, total, $2; fflush(); next } { print }' || status=$?
  return "$status"
}

# All at once, so that two files' words do not mix.
lint_one() {  # FILE
  local said status=0
  said=$(clang-tidy --quiet -p build/debug --extra-arg-before=-std=c++17 --extra-arg=-Wno-unknown-warning-option "$1" \
    2> >(grep -v ' warnings\? generated\.$' >&2)) || status=$?
  printf '%schecked %s\n' "${said:+$said$'\n'}" "$1"
  return "$status"
}
