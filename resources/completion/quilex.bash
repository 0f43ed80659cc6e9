# Completion of quilex for bash. The program itself says what may come next, a line each: a word, a tab, its meaning.
_quilex() {
  local IFS=$'\n' line width=0
  local -a lines
  mapfile -t lines < <("${1/#\~/$HOME}" complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
  COMPREPLY=()
  if [[ ${lines[0]-} == :files ]]; then
    compopt -o default
    return
  fi
  # Meanings are for looking at, not for being put into the command line: not if there is one word only, nor if the words
  # are gone through one by one.
  if [[ ${#lines[@]} -lt 2 || $COMP_TYPE == 37 || $COMP_TYPE == 42 ]]; then
    COMPREPLY=("${lines[@]%%$'\t'*}")
    return
  fi
  compopt -o nosort 2>/dev/null
  for line in "${lines[@]}"; do
    line=${line%%$'\t'*}
    ((${#line} > width)) && width=${#line}
  done
  for line in "${lines[@]}"; do
    COMPREPLY+=("$(printf '%-*s  %s' "$width" "${line%%$'\t'*}" "${line#*$'\t'}")")
  done
}
complete -F _quilex quilex
