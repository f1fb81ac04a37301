# Completion of topomine, topodata and make_cases in bash. What topodata can take, it says itself.

# Takes a line apart as the shell would: words without their quotes in `mots`, the quote that is still
# open in `ouvert`.
_topomine_mots() {
  local i c mot='' dans=''
  mots=() ouvert=''
  for ((i = 0; i < ${#1}; i++)); do
    c=${1:i:1}
    if [[ -z $ouvert && $c = [[:space:]] ]]; then
      [[ -n $dans ]] && mots+=("$mot")
      mot='' dans=''
      continue
    fi
    dans=oui
    if [[ $c = "$ouvert" ]]; then
      ouvert=''
    elif [[ -z $ouvert && $c = [\'\"] ]]; then
      ouvert=$c
    elif [[ $c = \\ && $ouvert != \' ]]; then
      ((++i))
      c=${1:i:1}
      [[ -n $ouvert && $c != [\$\`\"\\] ]] && mot+=\\
      mot+=$c
    else
      mot+=$c
    fi
  done
  mots+=("$mot")
}

# A text as it is typed outside quotes.
_topomine_protege() {
  local i c
  protege=''
  for ((i = 0; i < ${#1}; i++)); do
    c=${1:i:1}
    case $c in
      [\ \'\"\\\$\`\&\;\(\)\<\>\|\*\?\[\]\{\}\!\#]) protege+=\\ ;;
    esac
    protege+=$c
  done
}

# What is typed so far: the words in `mots`, the last of which is being completed, and in `devant` what
# that one has in front of the part that readline ($1) will replace. --option=value makes two words;
# `option` is the first with its "=", where the value is being completed.
_topomine_ligne() {
  local entiers complet
  _topomine_mots "$1"
  complet=${mots[*]}
  [[ -n $ouvert ]] && complet=$1
  _topomine_mots "${COMP_LINE:0:COMP_POINT}"
  entiers=("${mots[@]}") mots=() option=''
  for mot in "${entiers[@]}"; do
    option=''
    [[ $mot = --*=* ]] && option=${mot%%=*}= && mots+=("${option%=}")
    mots+=("${mot#"$option"}")
  done
  mot=${entiers[-1]}
  # Where readline breaks words is the user's choice: at "=" and ":", or not.
  devant=''
  if [[ $1 = [=:] ]]; then
    devant=$mot
  elif [[ $mot = *"$complet" ]]; then
    devant=${mot%"$complet"}
  fi
  mot=${mots[-1]}
}

# COMPREPLY from whole words.
_topomine_propose() {
  local candidat protege
  COMPREPLY=()
  for candidat in "$@"; do
    candidat=$option$candidat
    candidat=${candidat#"$devant"}
    if [[ -z $ouvert ]]; then
      _topomine_protege "$candidat"
      candidat=$protege
    fi
    COMPREPLY+=("$candidat")
  done
}

# Names of files (-f) or folders (-d) that begin with the current word.
_topomine_chemins() {
  local protege noms i
  _topomine_protege "$mot"
  mapfile -t noms < <(compgen "$1" -- "$protege")
  if [[ $devant = "$option" ]]; then
    compopt -o filenames 2>/dev/null
    COMPREPLY=("${noms[@]}")
    return
  fi
  # readline sees a part of the name only, and could not tell a folder by it.
  for i in "${!noms[@]}"; do
    [[ -d ${noms[i]/#\~\//$HOME/} ]] && noms[i]+=/ && compopt -o nospace 2>/dev/null
  done
  _topomine_propose "${noms[@]}"
}

_topodata() {
  local mots ouvert option devant mot propositions
  _topomine_ligne "$2"
  if [[ ${mots[-2]-} = *[\<\>] ]]; then
    _topomine_chemins -f
    return
  fi
  mots=("${mots[@]:1}")
  mapfile -t propositions < <("$1" __completer "${mots[@]/#\~\//$HOME/}" 2>/dev/null)
  case ${propositions[0]-} in
    :dossiers) _topomine_chemins -d ;;
    :fichiers) _topomine_chemins -f ;;
    *) _topomine_propose "${propositions[@]}" ;;
  esac
}

_topomine() {
  local mots ouvert option devant mot
  _topomine_ligne "$2"
  case ${#mots[@]} in
    2) _topomine_chemins -d ;;
    3) mapfile -t COMPREPLY < <(compgen -W 'ext nrm min' -- "$mot") ;;
  esac
}

_make_cases() {
  local mots ouvert option devant mot
  _topomine_ligne "$2"
  if [[ $mot = -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" --help 2>/dev/null | grep -oe '--[a-z]*')" -- "$mot")
  elif [[ ${mots[-2]} != --blocs && ${mots[-2]} != --graine ]]; then
    _topomine_chemins -d
  fi
}

complete -F _topodata topodata
complete -F _topomine topomine
complete -F _make_cases make_cases
