# shellcheck shell=bash
# Completion of the project's programs for bash, and for zsh, where _tembra-assoc loads it. What is possible is what the
# programs say themselves when a key asks for it, so nothing here has to follow them.

# _tembra_possible COMMAND...: a line for each option, argument and command in its help: kind, name, and what may stand
# there: "nothing", "number", "anything", or words with commas between them.
_tembra_possible() {
  "$@" --help 2>/dev/null </dev/null | awk '
    /^[Uu]sage:|^       tembra-/ {  # what some programs have in no list
      if (/--help/) print "option --help nothing"
      if (/--version/) print "option --version nothing"
    }
    /^$/ { kind = "" }
    /^Positionals:/ { kind = "argument" }
    /^Options:/ { kind = "option" }
    /^Subcommands:/ { kind = "command" }
    /^  -/ || (kind && /^  [^ ]/) {
      name = $1
      sub(/^-.,/, "", name)
      sub(/[{=].*/, "", name)
      values = "nothing"
      if (/^  [^ ]+ [A-Z]/ && $2 != "Excludes:") {  # more blanks lead to what it means
        values = $2 ~ /^(INT|FLOAT|N$)/ ? "number" : "anything"
        if (match($2, /[{].*[}]/)) values = substr($2, RSTART + 1, RLENGTH - 2)
      }
      print kind == "" ? "option" : kind, name, kind == "command" ? "nothing" : values
    }'
}

# _tembra_values PROGRAM NAME VALUES CURRENT: what can be the value of an option or an argument.
_tembra_values() {
  case $2:$3 in
    --type:*) compgen -W "$("$1" names device-types 2>/dev/null | awk '{ print $2 }')" -- "$4" ;;
    DEVICE:*) compgen -W "$("$1" devices 2>/dev/null | awk '{ print $1 }')" -- "$4" ;;
    --skip:*) compgen -W "$("$1" doctor --help 2>/dev/null | sed -n 's/^The checks: //p')" -- "$4" ;;
    --name:* | --place:* | value:* | bridge:* | bulb:* | code:* | text:*) ;;  # no files
    --scenario:* | --catalogue:*) compgen -d -- "$4"; compgen -f -X '!*.json' -- "$4" ;;
    *:anything) compgen -f -- "$4" ;;
    *:nothing | *:number) ;;
    *) compgen -W "${3//,/ }" -- "$4" ;;
  esac
}

# _tembra_words PROGRAM CURRENT PREVIOUS WORD...: what can stand behind these words and begins with CURRENT.
_tembra_words() {
  local program=$1 current=$2 previous=$3 commands=() possible word kind name values
  shift 3
  possible=$(_tembra_possible "$program")
  for word; do
    printf '%s\n' "$possible" | grep -Fx "command $word nothing" >/dev/null || continue
    commands+=("$word")
    # The options of the whole program stay.
    possible=$(printf '%s\n' "$possible" | grep '^option'; _tembra_possible "$program" "${commands[@]}")
  done
  values=$(printf '%s\n' "$possible" | awk -v name="$previous" '
    $1 == "option" && $2 == name && $3 != "nothing" { values = $3 }
    END { print values }')
  if [[ -n $values ]]; then
    _tembra_values "$program" "$previous" "$values" "$current"
    return
  fi
  printf '%s\n' "$possible" | sort -u | while read -r kind name values; do
    case $kind:$current in
      option:-* | command:[!-]* | command:) compgen -W "$name" -- "$current" ;;
      argument:[!-]* | argument:) _tembra_values "$program" "$name" "$values" "$current" ;;
    esac
  done
}

# What tembra-isolate runs is completed as if it stood alone.
_tembra_isolated() {
  local at=1
  while [[ $at -lt $COMP_CWORD && ${COMP_WORDS[at]} == -* ]]; do
    [[ ${COMP_WORDS[at]} == --speed ]] && at=$((at + 1))
    at=$((at + 1))
  done
  if [[ $at -ge $COMP_CWORD ]]; then
    [[ $at -gt $COMP_CWORD || ${COMP_WORDS[COMP_CWORD]} == -* ]] || compgen -c -- "${COMP_WORDS[COMP_CWORD]}"
  elif [[ ${COMP_WORDS[at]##*/} == tembra-* ]]; then
    _tembra_words "${COMP_WORDS[at]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}" \
      "${COMP_WORDS[@]:$((at + 1)):$((COMP_CWORD - at - 1))}"
  else
    compgen -f -- "${COMP_WORDS[COMP_CWORD]}"
  fi
}

_tembra() {
  local program=$1 current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} IFS=$'\n'
  [[ ${program:0:2} == '~/' ]] && program=$HOME/${program:2}
  # bash takes --role=lcd for three words.
  [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
  [[ $current == = ]] && current=''
  # shellcheck disable=SC2207
  COMPREPLY=($(
    IFS=$' \t\n'
    [[ ${program##*/} == tembra-isolate ]] && _tembra_isolated
    _tembra_words "$program" "$current" "$previous" "${COMP_WORDS[@]:1:$((COMP_CWORD - 1))}"
  ))
}

complete -o filenames -F _tembra tembra-assoc tembra-daemon-check tembra-isolate tembra-platform-check tembra-sim
