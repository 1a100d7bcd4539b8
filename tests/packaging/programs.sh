#!/bin/sh
# programs.sh PREFIX VERSION: the installed programs find their libraries and their data where the tree stands, and tell
# their version.
set -eu
version=$2
bin=$1/bin
libraries=$(cd "$1" && pwd -P)

for program in tembra-assoc tembra-daemon-check tembra-platform-check tembra-sim tembra-isolate; do
  echo "$program"
  ldd "$bin/$program" | grep 'libTembra.*\.so' | while read -r _ _ library _; do
    case $(readlink -f "$library") in
      "$libraries"/*) ;;
      *) echo "$library is not of this tree" && exit 1 ;;
    esac
  done
  test "$("$bin/$program" --version)" = "$program $version"
  "$bin/$program" --help | grep -Eiq "^usage: .*$program"
done
"$bin/tembra-sim" devices | grep -q '^metering-plug '

# Without its catalogue it names the place where the installed one belongs.
bare=$(mktemp -d)
trap 'rm -rf "$bare"' EXIT
mkdir "$bare/bin"
cp "$bin/tembra-sim" "$bare/bin"
ln -s "$libraries/lib" "$bare/lib"
"$bare/bin/tembra-sim" devices 2>&1 | grep -F "$bare/share/tembra/catalogue/zwave.json: cannot be read"

# The stand-in for the router's settings command is in no PATH but the one of tembra-isolate, and last in this.
test ! -e "$bin/nvram_get"
folder=$(mktemp -d)
trap 'rm -rf "$folder" "$bare"' EXIT
echo MeshSlaveID=3 >"$folder/settings"
printf '#!/bin/sh\necho 5\n' >"$folder/nvram_get"
chmod +x "$folder/nvram_get"
# asked PATH: the answer of the command that a shell finds.
asked() {
  cd "$folder"
  PATH=$1 TEMBRA_NVRAM=$folder/settings "$libraries/bin/tembra-isolate" sh -c 'nvram_get 2860 MeshSlaveID'
}
test "$(asked "$PATH")" = 3
test "$(asked "$folder:$PATH")" = 5

# The library's three minutes, with the installed help of tembra-isolate.
timeout 60 "$bin/tembra-isolate" --speed 1000 sh -c 'export TEMBRA_LOG=off
  "$1/tembra-sim" run >/dev/null 2>&1 &
  until "$1/tembra-sim" status >/dev/null 2>&1; do kill -0 $!; sleep 0.02; done
  "$1/tembra-assoc" add </dev/null
  "$1/tembra-sim" stop' sh "$bin" 2>&1 | grep 'No device answered in time'
