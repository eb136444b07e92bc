#!/bin/sh
# story.sh BUILD_DIRECTORY: what scripts/demo shows: the work of an update component on one day. Runs only
# in the sandbox, because it writes to the installation directory.
set -u
case ${1:---help} in
  --help | -h) sed -n '2,/^set/s/^# //p' "$0"; exit ;;
esac
[ $# -eq 1 ] && [ -n "${ZRCOMMON_SANDBOX:-}" ] || { echo "story.sh: see $0 --help" >&2; exit 2; }
build=$(cd "$1" && pwd)
home=/usr/lib/Valdrix/Valdrix
site=/scratch/site
log=/scratch/component.log
web=http://127.0.0.1:8080
failures=0
PATH=$build:$PATH

if [ -t 1 ]; then
  bold=$(printf '\033[1m') green=$(printf '\033[32m') red=$(printf '\033[31m') plain=$(printf '\033[0m')
else
  bold='' green='' red='' plain=''
fi

chapter() { printf '\n%s%s%s\n' "$bold" "$*" "$plain"; }
note() { zrtool log "$log" UPDATE "$*"; }

# expect STATUS WHAT COMMAND...: runs the command, shows its output and checks its exit status.
expect() {
  wanted=$1 what=$2
  shift 2
  printf '  $ %s\n' "$*"
  "$@" > /scratch/out 2>&1
  status=$?
  fold -s -w 92 /scratch/out | sed -n '1,14s/^/    /p'
  if [ "$status" -eq "$wanted" ]; then
    printf '  %sok%s: %s\n' "$green" "$plain" "$what"
    note "$what"
  else
    printf '  %sFAILED%s: %s (exit status %s, expected %s)\n' "$red" "$plain" "$what" "$status" "$wanted"
    failures=$((failures + 1))
  fi
}

# The whole output of the last command.
answer() { cat /scratch/out; }

start_server() {
  mkdir -p "$site/check"
  seq 1 700000 > "$site/base.bin"
  zrtool secure 'updates?latest=7.2&file=base.bin&note=Fixes%20everything' > "$site/list"
  python3 -m http.server --bind 127.0.0.1 --directory "$site" 8080 > /scratch/server.log 2>&1 &
  server=$!
  trap 'kill "$server" 2>/dev/null' EXIT
  for _ in $(seq 100); do
    zrtool fetch "$web/list" > /dev/null 2>&1 && return
    sleep 0.05
  done
  echo "the web server did not start" >&2
  exit 1
}

stop_server() {
  kill "$server"
  wait "$server" 2>/dev/null
}

export ZRTOOL_KEY=8W371KJ05926143DCF57
profile=/scratch/update.ini
printf '; the update component\r\n[Update]\r\nServer = 3\r\nVersion = 7.1\r\n' > "$profile"
ip link add veth0 type veth peer name veth1

chapter "An update component starts on a machine without an internet library"
expect 1 "the fetch fails" zrtool fetch "$web/list"
expect 1 "the doctor says what is missing" zrtool doctor

chapter "It gets the internet library and the server directory"
cp "$build/examples/inet/libinet.so" "$home/"
printf '3\tUpdate\t%s\n12\tConnection Check\t%s/check\n' "$web" "$web" > /scratch/servers
zrtool directory pack "$home/infoeml.dat" < /scratch/servers
expect 0 "the installation is sound" zrtool doctor
expect 0 "the name of an entry is found in upper and lower case" zrtool directory get 3 update
server_address=$(answer)

chapter "It reads its profile"
expect 0 "version 7.1 is installed" zrtool profile get "$profile" update version
expect 0 "its server is entry 3 of the directory" zrtool profile get-int "$profile" update server
expect 1 "a missing entry has a code" zrtool profile get "$profile" update proxy

chapter "It checks the connection"
start_server
expect 1 "the server has no probe file yet" zrtool check
touch "$site/check/msg32.bin"
expect 1 "the second probe file alone does not count" zrtool check
touch "$site/check/msg32.htm"
expect 0 "the internet is reachable" zrtool check

chapter "It fetches the update list, with a secure command in the address"
expect 0 "names and values of the request are hidden" zrtool secure 'list?product=12&version=7.1'
expect 0 "the list arrives, hidden too" zrtool fetch "$server_address/$(answer)"
expect 0 "with the same key it is readable" zrtool plain "$(answer)"

chapter "It fetches the update and searches it"
expect 0 "$(wc -c < "$site/base.bin") bytes arrive, in chunks of 15000" \
  zrtool fetch "$server_address/base.bin" --output /scratch/base.bin
expect 0 "they equal those of the server" cmp "$site/base.bin" /scratch/base.bin
expect 0 "a number is found after four million bytes" zrtool find 654321 /scratch/base.bin
expect 1 "a body larger than the buffer is refused" zrtool fetch "$server_address/base.bin" --max 1000
expect 1 "a missing page is refused" zrtool fetch "$server_address/missing"

chapter "It records the update in its profile"
expect 0 "the version is changed" zrtool profile set "$profile" update Version 7.2
expect 0 "a new section is appended" zrtool profile set "$profile" History Last 7.1
expect 0 "the profile as it is now" cat "$profile"

chapter "It reports the machine's address"
expect 0 "the links, and which of them count for the address" zrtool interfaces --why

chapter "The server stops"
stop_server
expect 1 "a stopped server is refused" zrtool fetch "$server_address/list"

chapter "What the logs hold"
sed 's/^/    /' /zrcommon.log
tr -d '\r' < "$log" | sed 's/^/    /'

if [ "$failures" -gt 0 ]; then
  printf '\n%s%s steps did not go as expected%s\n' "$red" "$failures" "$plain"
  exit 1
fi
printf '\n%sEverything went as expected.%s\n' "$green" "$plain"
