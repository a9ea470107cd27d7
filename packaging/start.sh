#!/bin/sh
# Installed as <prefix>/games/tarvyle: starts the engine in a folder of the user's own.
#
# The engine keeps its files beside itself, and the folder in the name that it was started under is
# where it takes that to be. So each user has a folder with the configuration, the book and a link
# to the program, and the link is what is started. It takes this script's place (exec): the engine
# writes no learn file while another process of its name runs, and this script bears that name.
set -eu

give_up() {
  printf 'tarvyle: %s\n' "$*" >&2
  exit 1
}

games=$(dirname "$(readlink -f "$0")")
installed=$(dirname "$games")/lib/tarvyle
[ -x "$installed/tarvyle" ] || give_up "$installed/tarvyle is not installed"

case ${XDG_DATA_HOME:-} in
  /*) folder=$XDG_DATA_HOME/tarvyle ;; # a relative path does not count
  *)
    [ -n "${HOME:-}" ] || give_up "HOME is not set, so there is no folder for the learn file"
    folder=$HOME/.local/share/tarvyle
    ;;
esac
(umask 077 && mkdir -p "$folder") || give_up "cannot make the folder $folder"

# Whole at every moment, should two engines start at once.
for name in tarvyle.cfg tarvyle.bk; do
  [ -e "$folder/$name" ] && continue
  part=$folder/$name.$$
  if ! cp "$installed/$name" "$part" || ! mv "$part" "$folder/$name"; then
    rm -f "$part"
    give_up "cannot copy $name to $folder"
  fi
done

program=$folder/tarvyle
if [ "$(readlink "$program" || :)" != "$installed/tarvyle" ]; then
  ln -sfT "$installed/tarvyle" "$program" || give_up "cannot make the link $program"
fi
exec "$program" "$@"
