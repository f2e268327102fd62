#!/bin/bash
# run_test.sh SOURCE_DIR: what ./run says where it cannot do what is asked: on a system without apt-get, without network,
# without root, with tools too old, with words it does not know. A copy of it runs, as an ordinary user, with a PATH of
# stubs; it must say what is missing and how to get it, and change nothing.
# shellcheck disable=SC2016  # what stubs do with their arguments
set -euo pipefail
source=$1
top=$(mktemp -d -p "${CORVANE_TEST_SERVER_DIR:-${TMPDIR:-/tmp}}")  # goes with the server, if not before
trap 'chmod -R u+w "$top"; rm -rf "$top"' EXIT
trap 'exit 143' TERM INT HUP
tree="$top/a tree" bin=$top/bin
as_user=()
if ((EUID == 0)); then as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups); fi

mkdir -p "$tree/tools" "$tree/examples" "$bin" "$top/elsewhere"
cp "$source/run" "$source/CMakePresets.json" "$tree"
cp -r "$source/tools/chores" "$tree/tools"
cp "$source"/examples/[0-9]*.cpp "$source/examples/README.md" "$tree/examples"
printf '#!/bin/sh\necho "server: $*"\n' >"$tree/tools/private-server"
chmod +x "$tree/tools/private-server"
for tool in awk bash cat comm dirname echo env grep head mkdir realpath sed sh sort tr xargs; do
  ln -s "$(type -P $tool)" "$bin"
done

chmod -R a+rwX "$top"  # so that only its own care keeps ./run from changing something

stub() {  # NAME SCRIPT
  cat >"$bin/$1" <<STUB
#!/bin/sh
printf '%s\\n' "$1 \$*" >>'$top/calls'
$2
STUB
  chmod a+rx "$bin/$1"
}
fail() {
  echo "$what: $*"
  tail -n +1 "$top/out" "$top/err" "$top/calls"
  exit 1
}
listed() {
  find "$tree" -printf '%P %s %m %T@\n' | sort
}

# Runs ./run and compares its status; its output, the calls of stubs, and whether the tree is as before stay to be seen.
run=("$tree/run")
try() {  # STATUS ARGUMENT...
  local expected=$1 status=0 before
  shift
  what="./run $*"
  count=$((count + 1))
  : >"$top/calls"
  chmod a+rw "$top/calls"
  before=$(listed)
  (cd "$top/elsewhere" && PATH=$bin exec "${as_user[@]/#setpriv/$(type -P setpriv)}" "${run[@]}" "$@") \
    >"$top/out" 2>"$top/err" </dev/null || status=$?
  ((status == expected)) || fail "it ends with $status, and not with $expected"
  [[ -n ${may_build:-} || $(listed) == "$before" ]] || fail "it has changed the tree"
}
says() {  # TEXT: all of the error output
  diff -u - <(cat "$top/err") <<<"$1" || fail "it says something else"
}
mentions() {  # TEXT
  grep -qF -- "$1" "$top/err" || fail "it does not say: $1"
}
calls() {  # TEXT: all calls of stubs
  diff -u - "$top/calls" <<<"$1" || fail "other calls"
}
count=0
install='apt-get install -y --no-install-recommends clang-format git'

# Words.
try 2 tset
says "run: no chore 'tset'; did you mean test?
./run help says what there is."
try 2 frobnicate
says "run: no chore 'frobnicate'
./run help says what there is."
try 2 format --chek
says "run: ./run format knows no '--chek'; did you mean --check?
./run help format says what there is."
try 2 lint everything
try 2 demo --puase
try 2 demo everything
try 2 abi --accept everything
try 2 fuzz 3x
try 2 torture soon
try 2 test --server postgres
try 2 example 11

# Help, which needs nothing, and has a line for every chore.
try 0 help
cp "$top/out" "$top/help"
[[ -z $(awk 'length > 120' "$top/help") ]] || fail "lines are too long"
chores=$(sed -n 's/^chores=(\(.*\))$/\1/p' "$source/run")
for chore in $chores; do
  try 0 help "$chore"
  grep -q "^  ./run $chore\( \|$\)" "$top/out" || fail "it says nothing of $chore"
  grep -qxFf "$top/out" "$top/help" || fail "it says something else than the whole help"
  cp "$top/out" "$top/of_chore"
  try 0 "$chore" --help
  cmp "$top/out" "$top/of_chore" || fail "it says something else than ./run help $chore"
done
try 0
cmp "$top/out" "$top/help" || fail "without a word it is not the help"
try 0 example
for program in "$source"/examples/[0-9]*.cpp; do
  grep -q "^  $(basename "$program" .cpp)  " "$top/out" || fail "it does not list $program"
done

# No apt-get.
try 1 format
says "run: this system has no apt-get and dpkg to install what is needed.
./run format needs what these packages of Debian 12 hold:
  clang-format git
In a container of Debian 12, where there is docker:
  docker run --rm -it -v \"\$PWD:/corvane\" -w /corvane debian:12 ./run format"

# Packages missing, and neither root nor sudo.
stub dpkg-query 'exit 1'
stub apt-get 'exit 0'
try 1 format
says "run: ./run format needs packages which only root can install. Run as root:
  apt-get update && $install"
calls "dpkg-query -W -f \${db:Status-Status} \${Package}\\n clang-format git"

# A sudo that refuses.
stub sudo 'echo "sorry" >&2; exit 1'
try 1 format
mentions "sorry"
mentions "run: the packages could not be installed"
mentions "  apt-get update && $install"

# No network: apt-get update warns and succeeds, and nothing can be fetched.
no_network='case $* in *update) echo "W: Failed to fetch" >&2 ;; *) echo "E: Unable to fetch some archives" >&2; exit 100 ;; esac'
stub sudo 'exec "$@"'
stub apt-get "$no_network"
try 1 format
mentions "E: Unable to fetch some archives"
mentions "Without a network it can fetch nothing"
mentions "  apt-get update && $install"
grep -q "^==> ./run format needs packages that are not here; installing: clang-format git$" "$top/out" ||
  fail "it does not say what it installs"
[[ $(grep -c ^apt-get "$top/calls") == 2 ]] || fail "apt-get is called otherwise"
if ((EUID == 0)); then
  stub sudo 'exit 1'
  saved=("${as_user[@]}")
  as_user=()
  try 1 format
  mentions "Without a network it can fetch nothing"
  ! grep -q ^sudo "$top/calls" || fail "root calls sudo"
  as_user=("${saved[@]}")
fi

# All packages are there; CMake is that of Debian 11, or its error would be all that one sees.
stub dpkg-query 'shift 3; for package; do echo "installed $package"; done'
stub cmake 'if [ "$1" = --version ]; then echo "cmake version 3.18.4"; fi'
try 1 demo
says "run: CMake 3.25 or later is needed, as Debian 12 has it, and $bin/cmake is 3.18.4.
Put a newer one first in PATH, or take a newer system. In a container of Debian 12, where there is docker:
  docker run --rm -it -v \"\$PWD:/corvane\" -w /corvane debian:12 ./run demo"
! grep -q ^apt-get "$top/calls" || fail "it calls apt-get"

# A tree that cannot be written to.
stub cmake 'if [ "$1" = --version ]; then echo "cmake version 3.25.1"; fi'
chmod a-w "$tree"
try 1 demo
says "run: cannot write to $tree/build, where everything is built. Run it as somebody who may, or in a copy:
  cp -r '$tree' ~/corvane && ~/corvane/run demo"

# Called from elsewhere, by another name: it works in its own folder. What fails is said with the status.
chmod a+w "$tree"
mkdir -m 777 "$tree/build"
stub cmake 'if [ "$1" = --version ]; then echo "cmake version 3.25.1"; else pwd; fi'
ln -s "../a tree/run" "$top/elsewhere/linked"
for run in "$tree/run" "../a tree/run" "$top/elsewhere/linked" ./linked; do
  run=("$run")
  try 0 demo --load-only
  [[ $(grep -cxF "$tree" "$top/out") == 2 ]] || fail "it does not configure and build in $tree"
  grep -qxF "server: run -- build/release/examples/demo/demo --load-only" "$top/out" || fail "it does not run the demo"
done
stub cmake 'if [ "$1" = --version ]; then echo "cmake version 4.0"; elif [ "$1" = --build ]; then exit 3; fi'
try 3 demo
grep -q "^run: ./run demo ended with status 3, after [0-9]* s$" "$top/err" || fail "it does not say how it ended"

# The options of ctest: those that there are pass, and a misspelt one does not, which ctest itself would overlook.
stub cmake 'if [ "$1" = --version ]; then echo "cmake version 3.25.1"; fi'
for tool in ctest grep mv nproc rm rmdir tail; do ln -sf "$(type -P $tool)" "$bin"; done
stub localedef 'mkdir -p build/locale/new/de_DE.UTF-8'
for chore in test sanitize; do
  for options in "-R name -V" "--tests-regex name" "-j2 --rerun-failed" "-LE label --repeat until-fail:2" "--timeout=5"; do
    # shellcheck disable=SC2086  # words
    may_build=1 try 0 $chore $options
    grep -q "^server: run .* $options\$" "$top/out" || fail "it does not give ctest the options"
  done
  for options in "--rerun-faild" "-R name --tests-regx other" "name"; do
    # shellcheck disable=SC2086  # words
    try 2 $chore $options
  done
  try 2 $chore --rerun-failed -R
  says "run: -R needs a value behind it
./run help $chore says what there is."
done
try 2 bench --quick --only
says "run: --only needs a value behind it
./run help bench says what there is."

if [[ -n ${CORVANE_TALLY:-} ]]; then
  printf '%d\t./run called where it cannot go on, or for help\tmessage, status, and that it changes nothing\n' \
    "$count" >>"$CORVANE_TALLY"
fi
echo "$count calls of ./run"
