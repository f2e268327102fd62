# shellcheck shell=bash disable=SC2154  # part of ./run
# What has changed for programs that are linked already.

abi() {  # [--accept | --since [REVISION]]
  local check=(tests/abi/record.py --library build/debug/libcorvane.mysql.so --work build/abi/record) status=0
  if (($# > 1)) && [[ $1 != --since || $# -gt 2 ]]; then misused "./run abi knows no '${*: -1}'"; fi
  case ${1:-} in
    "" | --accept) need abi "${build_packages[@]}" git python3 ;;
    --since) need abi "${build_packages[@]}" git abigail-tools ;;
    *) misused "./run abi knows no '$1'; it knows --accept and --since REVISION" ;;
  esac
  build debug --target corvane
  case ${1:-} in
    --accept)
      "${check[@]}" --accept
      echo "Recorded in tests/abi/recorded."
      if git rev-parse 2>/dev/null; then git diff --stat -- tests/abi/recorded; fi
      ;;
    --since) abi_since "${2:-}" ;;
    *)
      step "Comparing with the record"
      "${check[@]}" || status=$?
      ((status)) || echo "No difference."
      step "Comparing the record with that of the last release"
      tests/abi/release.py . || status=$?
      return "$status"
      ;;
  esac
}

abi_since() {  # REVISION, or nothing
  local revision=$1 commit folder status=0
  if [[ -z $revision ]]; then
    revision=$(git tag --list --merged HEAD --sort=-version:refname | grep -xE -m 1 'v[0-9]+(\.[0-9]+)*') || revision=HEAD
  fi
  commit=$(git rev-parse --verify --quiet "$revision^{commit}") || fail "abi: there is no revision $revision"
  folder=build/abi/$commit
  if [[ ! -e $folder/build/libcorvane.mysql.so ]]; then
    step "Building the library of $revision"
    rm -rf "$folder"
    mkdir -p "$folder/source"
    git archive "$commit" | tar -x -C "$folder/source"
    cmake -G Ninja -S "$folder/source" -B "$folder/build" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=g++ \
      -DCORVANE_BUILD_TESTS=OFF -DCORVANE_BUILD_EXAMPLES=OFF >/dev/null
    cmake --build "$folder/build" --target corvane
  fi
  step "Comparing the library with that of $revision"
  abidiff --leaf-changes-only --headers-dir1 "$folder/source/corvane" --headers-dir2 corvane \
    --drop-private-types "$folder/build/libcorvane.mysql.so" build/debug/libcorvane.mysql.so || status=$?
  # Of its status the two lowest bits tell of errors, the others of differences.
  ((status)) || echo "No difference."
  ((status & 3)) && fail "abidiff could not compare"
  return 0
}
