#!/usr/bin/env zsh
# completion.zsh PREFIX: at a terminal, zsh completes the installed programs' commands, values and files.
emulate -R zsh
zmodload zsh/zpty zsh/datetime
readonly prefix=$1
readonly patience=30  # seconds
folder=$(mktemp --directory)
trap 'rm --recursive --force $folder' EXIT
touch $folder/evening.json

# awaits TEXT: reads what the terminal shows until TEXT is there.
awaits() {
  local shown chunk
  local -F until=$((EPOCHREALTIME + patience))
  while ((EPOCHREALTIME < until)); do
    if zpty -r -t shell chunk; then shown+=$chunk; else sleep 0.05; fi
    [[ $shown == *$1* ]] && return
  done
  print -u2 -r -- "completion: no \"$1\" in: ${(V)shown}"
  exit 1
}

# expect TYPED LINE: the key makes LINE of what was typed.
expect() {
  zpty -w -n shell "$1"$'\t'
  awaits "$2"
  zpty -w -n shell $'\C-u'
}

zpty shell 'TERM=dumb zsh -f -i'
zpty -w shell "PATH=${(q)prefix}/bin:\$PATH; fpath=(${(q)prefix}/share/zsh/site-functions \$fpath); cd ${(q)folder}"
zpty -w shell "autoload -Uz compinit; compinit -D -u; PS1=; unset zle_bracketed_paste; print rea''dy"
awaits ready
expect 'tembra-assoc ca' 'tembra-assoc cancel'
expect 'tembra-assoc hue disc' 'tembra-assoc hue discover'
expect 'tembra-assoc add --type Lum' 'tembra-assoc add --type LuminanceSensor'
expect 'tembra-sim run --scenario ev' 'tembra-sim run --scenario evening.json'
expect 'tembra-sim press metering' 'tembra-sim press metering-plug'
zpty -d shell
