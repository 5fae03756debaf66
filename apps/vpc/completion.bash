# Completes the command line of vpc in bash.

_vpc_options() { # COMMAND
  local camera='--eye --target --up --field --viewport --perspective --parallel'
  local cuts='--section --clip-circle --clip-polygon --matrix'
  local shown="--budget --density --level $cuts"
  case $1 in
    prepare)
      echo --help --output --tree --max-points --max-level --unit --memory --work \
        --log --text --allow-incomplete --skip-bad --quiet --progress --json --force
      ;;
    info) echo --help --json --nodes --stats ;;
    verify) echo --help --json ;;
    view)
      echo --help "$shown" --stylization --scheme --image --size --point-size --shading --range \
        --background --no-legend --points --force --report --diagnostics "$camera"
      ;;
    pick) echo --help "$shown" --at --pixel --size --box --json "$camera" ;;
    export) echo --help --output --format --level "$cuts" --coloured-by --force ;;
    sample) echo --help --points --seed --format --order --force ;;
  esac
}

# Files whose extension is one of a pattern's, in small or capital letters, and folders.
_vpc_files() { # PATTERN WORD
  local file
  compgen -d -- "$2"
  compgen -f -- "$2" | while IFS= read -r file; do
    shopt -s extglob nocasematch
    # shellcheck disable=SC2053
    [[ ! -d $file && $file == *.$1 ]] && printf '%s\n' "$file"
  done
}

_vpc() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local command=${COMP_WORDS[1]} words='' files='' IFS=$' \t\n'
  if [[ $COMP_CWORD -eq 1 ]]; then
    words='prepare info verify view pick export sample help version --help --version'
  elif [[ $word == -* ]]; then
    words=$(_vpc_options "$command")
  else
    case $command:$before in
      prepare:--tree) words='octree kd' ;;
      prepare:--text) words='auto strict' ;;
      prepare:--progress) words='words json none' ;;
      *:--density) words='low full' ;;
      *:--stylization) words='auto scan elevation intensity' ;;
      *:--point-size) words=auto ;;
      *:--shading) words='depth none' ;;
      *:--background) words='slate black grey white blue' ;;
      *:--scheme) words='ScanColors Spectrum Earth Hydro Gray Reds Greens Blues' ;;
      *:--coloured-by) words=elevation ;;
      export:--format) words='las ply pts ptx xyz csv' ;;
      *:--format) words='3 7' ;;
      *:--order) words='flight random' ;;
      prepare:--output | prepare:-o) files='vpt' ;;
      prepare:--unit)
        words='auto us-ft Inches Feet Miles Millimeters Centimeters Meters Kilometers Yards'
        ;;
      *:--output | *:-o) files='@(las|ply|pts|ptx|xyz|csv)' ;;
      *:--image) files='png' ;;
      *:--work | *:--diagnostics | *:--log | view:--points) files='*' ;;
      prepare:*) files='@(las|pts|ptx|xyz|txt|csv|asc)' ;;
      sample:*) files='@(las|pts|ptx)' ;;
      *) files='vpt' ;;
    esac
  fi
  if [[ -n $files ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(_vpc_files "$files" "$word")
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  fi
}

complete -F _vpc vpc
