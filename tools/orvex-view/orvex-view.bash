# Completion of orvex-view for bash.

_orvex_view() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  local options='--size --background --statistics --bare --look --wireframe --normals --samples --path
    --layer --azimuth --elevation --up --plugin --loader --help --version --quiet --verbose'
  COMPREPLY=()

  # "--name=value" comes as three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$before" = = ]; then
    before=${COMP_WORDS[COMP_CWORD-2]}
  fi

  local words='' files=''
  case $before in
    -b | --background) words='black white gray red green blue yellow cyan magenta orange' ;;
    -l | --look) words='lit matcap normals plain wire' files='glsl' ;;
    --layer) words='color depth normal position object material face' ;;
    --path) words='gl2 gl3' ;;
    -n | --normals) words='file smooth flat' ;;
    -u | --up) words='auto x y z -x -y -z' ;;
    -m | --samples) words='0 2 4 8' ;;
    -s | --size) words='640x480 1280x960 1920x1080' ;;
    --plugin) files='so' ;;
    -a | --azimuth | -e | --elevation | --loader) return ;;
    *) case $current in
         -*) words=$options ;;
         *) files='obj|OBJ|3ds|3DS' ;;
       esac ;;
  esac

  if [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
  if [ -z "$files" ]; then
    return
  fi
  local path
  compopt -o filenames 2>/dev/null
  while IFS= read -r path; do
    if [ -d "$path" ] || [[ $path =~ \.($files)$ ]]; then
      COMPREPLY+=("$path")
    fi
  done < <(compgen -f -- "$current")
}

complete -F _orvex_view orvex-view
