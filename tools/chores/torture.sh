# shellcheck shell=bash disable=SC2154  # part of ./run
# Torture, by chance and on a cluster.

# The scripts by which a node gets the data of another are in a package whose installation would start a server, so it
# is only unpacked. False when it cannot be had.
unpack_mariadb_server() {
  local folder=build/mariadb-server download=(apt-get -qq -o APT::Sandbox::User=root download mariadb-server) as_root=()
  if [[ -e $folder/usr/bin/wsrep_sst_rsync ]]; then return; fi
  step "Unpacking the package mariadb-server, which stays uninstalled"
  if ((EUID != 0)); then as_root=(sudo); fi
  rm -rf "$folder" "$folder.new"
  mkdir -p "$folder.new"
  (
    cd "$folder.new"
    { "${download[@]}" 2>/dev/null || { "${as_root[@]}" apt-get -qq update && "${download[@]}"; }; } &&
      dpkg-deb -x mariadb-server_*.deb .
  ) || return 1
  mv "$folder.new" "$folder"
}

torture_cluster() {  # [KILLS]
  local kills=${1:-10} journals=$PWD/build/cluster-journals tally=$PWD/build/cluster-tally.tsv status=0
  [[ $kills =~ ^[1-9][0-9]*$ ]] || misused "torture cluster: how many kills? '$kills'"
  need torture "${test_packages[@]}"
  if ! (need torture "${cluster_packages[@]}") || ! unpack_mariadb_server; then
    step "NOT RUN: the packages of the cluster cannot be had here, so nothing was tried on one"
    [[ ${CI:-} == true ]] || fail "no cluster"
    return 0
  fi
  build sanitize --target cluster_torture
  export_sanitizer_options
  rm -rf "$journals" "$tally"
  mkdir "$journals"
  step "Killing nodes of a private cluster, $kills times; the journals are in build/cluster-journals"
  tools/private-cluster run -- env CORVANE_TALLY="$tally" CORVANE_CLUSTER_KILLS="$kills" \
    CORVANE_CLUSTER_JOURNALS="$journals" timeout --kill-after=10 "$((120 + 120 * kills))" \
    build/sanitize/tests/cluster/cluster_torture || status=$?
  print_tally "$tally"
  return "$status"
}

torture_by_chance() {  # MINUTES
  local minutes=$1 tally=$PWD/build/torture-tally.tsv status=0
  [[ $minutes =~ ^[1-9][0-9]*$ ]] || misused "torture: how many minutes? '$minutes'"
  need torture "${test_packages[@]}"
  build sanitize
  make_locale
  export_sanitizer_options
  : >"$tally"
  step "Torturing the library for $minutes minutes"
  tests/torture "$minutes" "$tally" || status=$?
  print_tally "$tally"
  return "$status"
}

torture() {  # [MINUTES] | cluster [KILLS]
  local what=${1:-10}
  shift || true
  case $what in
    cluster) torture_cluster "$@" ;;
    *) torture_by_chance "$what" ;;
  esac
}
