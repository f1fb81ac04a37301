# Completion of topomine, topodata and make_cases in bash. What topodata can take, it says itself.

# Names of files (-f) or folders (-d) that begin with the current word.
_topomine_chemins() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen "$1" -- "$2")
}

_topodata() {
  local mot mots=()
  # Words as the program would get them; "=" between an option and its value is a word here.
  for mot in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
    [[ $mot = '=' ]] && continue
    mot=${mot//[\\\"\']/}
    mots+=("${mot/#\~\//$HOME/}")
  done
  local courant=$2
  if [[ ${COMP_WORDS[COMP_CWORD]} = '=' ]]; then
    mots+=('')
    courant=
  fi
  mapfile -t COMPREPLY < <("$1" __completer "${mots[@]}" 2>/dev/null)
  case ${COMPREPLY[0]-} in
    :dossiers) _topomine_chemins -d "$courant" ;;
    :fichiers) _topomine_chemins -f "$courant" ;;
  esac
}

_topomine() {
  case $COMP_CWORD in
    1) _topomine_chemins -d "$2" ;;
    2) mapfile -t COMPREPLY < <(compgen -W 'ext nrm min' -- "$2") ;;
  esac
}

_make_cases() {
  if [[ $2 = -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" --help 2>/dev/null | grep -oe '--[a-z]*')" -- "$2")
  elif [[ $3 != --blocs && $3 != --graine ]]; then
    _topomine_chemins -d "$2"
  fi
}

complete -F _topodata topodata
complete -F _topomine topomine
complete -F _make_cases make_cases
